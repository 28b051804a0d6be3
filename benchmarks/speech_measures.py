"""What a stretch did to speech, in numbers: joins, timing, pitch, and how near the spectrum stayed.

Everything compares an output with a reference of the same text: another output of the same speed, or
the document itself, looked at where the output ought to be. Only frames in which somebody speaks
count. It needs Debian's numpy.
"""

from dataclasses import dataclass

import numpy

HOP_SECONDS = 0.008
WINDOW_SECONDS = 0.025
BANDS = 40
LOWEST_HERTZ = 60
HIGHEST_HERTZ = 8000
FLOOR_DECIBELS = 50  # Below the loudest band of the reference; what is quieter counts as silence.
SPEECH_DECIBELS = 35  # A frame this far below the loudest one is no speech.
REACH_SECONDS = 0.04  # How far an output may lie beside its place and still be recognized.
STEADY_SECONDS = 0.15  # Over this long a lie is averaged before it is believed.

PITCH_WINDOW_SECONDS = 0.04
PITCH_HERTZ = (70, 400)
VOICED = 0.85  # Self-likeness from which a frame counts as voiced.

BORDER_SECONDS = 0.04  # A run that is cut short may click a little before its end.
EDGE_SECONDS = 0.6


@dataclass
class Likeness:
    distance: float  # Mean difference of the log-mel spectra in dB.
    wander: float  # Milliseconds from its place that 95 percent of the speech stays within.
    pitch: float  # Median difference of the voiced frames' pitch in cents.
    lost: float  # By how many dB the voiced frames became less periodic: hum, roughness.
    smear: float  # By how many dB the peaks of the voice's pulses became lower: phasiness.


class Sound:
    """One channel of samples at a rate, with its frames around given moments."""

    def __init__(self, samples, rate):
        self.samples = samples.astype(numpy.float64)
        self.rate = rate

    @property
    def seconds(self):
        return len(self.samples) / self.rate

    def frames(self, moments, seconds):
        """A row of samples around each moment, silence where there are none."""
        length = int(round(seconds * self.rate))
        starts = numpy.round(numpy.asarray(moments) * self.rate).astype(int) - length // 2
        padded = numpy.pad(self.samples, length)
        starts = numpy.clip(starts + length, 0, len(padded) - length)
        return padded[starts[:, None] + numpy.arange(length)]

    def log_mel(self, moments):
        rows = self.frames(moments, WINDOW_SECONDS)
        size = 1 << int(numpy.ceil(numpy.log2(rows.shape[1])) + 1)
        power = numpy.abs(numpy.fft.rfft(rows * numpy.hanning(rows.shape[1]), size)) ** 2
        return 10 * numpy.log10(power @ mel_bands(self.rate, size).T + 1e-12)


def mel_bands(rate, size):
    """Triangles of equal height, a row for each band."""
    def to_mel(hertz):
        return 2595 * numpy.log10(1 + hertz / 700)

    highest = min(HIGHEST_HERTZ, 0.45 * rate)
    edges = numpy.linspace(to_mel(LOWEST_HERTZ), to_mel(highest), BANDS + 2)
    places = to_mel(numpy.fft.rfftfreq(size, 1 / rate))
    step = edges[1] - edges[0]
    return numpy.maximum(0, 1 - numpy.abs(places[None, :] - edges[1:-1, None]) / step)


def compare(output, reference, reference_speed):
    """`reference_speed` is that of the output when the reference is the document, else 1."""
    moments = numpy.arange(0.1, output.seconds - 0.1, HOP_SECONDS)
    mel = output.log_mel(moments)
    wanted = reference.log_mel(moments * reference_speed)
    loudest = wanted.max()
    speech = wanted.max(axis=1) > loudest - SPEECH_DECIBELS
    floor = loudest - FLOOR_DECIBELS
    mel, wanted = numpy.maximum(mel, floor), numpy.maximum(wanted, floor)

    reach = int(round(REACH_SECONDS / HOP_SECONDS))
    costs = numpy.stack([
        numpy.abs(numpy.roll(mel, -shift, axis=0) - wanted).mean(axis=1)
        for shift in range(-reach, reach + 1)
    ])
    shifts = numpy.argmin(smooth(costs, STEADY_SECONDS / HOP_SECONDS), axis=0) - reach
    speech[: reach + 1] = speech[-reach - 1 :] = False
    distance = costs[shifts + reach, numpy.arange(len(moments))][speech].mean()
    wander = numpy.percentile(numpy.abs(shifts[speech]), 95) * HOP_SECONDS * 1000

    pairs = moments[speech], (moments + shifts * HOP_SECONDS)[speech]
    pitch, lost, smear = compare_voices(output, pairs[1], reference, pairs[0] * reference_speed)
    return Likeness(distance, wander, pitch, lost, smear)


def smooth(rows, length):
    """Mean over `length` neighbours along the last axis."""
    half = int(length) // 2
    padded = numpy.pad(rows, ((0, 0), (half + 1, half)), mode="edge")
    sums = numpy.cumsum(padded, axis=1)
    return (sums[:, 2 * half + 1 :] - sums[:, : -2 * half - 1]) / (2 * half + 1)


def self_likeness(rows):
    """How like each row is to itself, later by each number of samples: 1 is equal."""
    length = rows.shape[1]
    rows = rows - rows.mean(axis=1, keepdims=True)
    size = 1 << int(numpy.ceil(numpy.log2(2 * length)))
    spectrum = numpy.fft.rfft(rows, size)
    products = numpy.fft.irfft(numpy.abs(spectrum) ** 2, size)[:, :length]
    energy = numpy.cumsum(rows**2, axis=1)
    whole = energy[:, -1:]
    # Of a sample pair the first comes from all but the end, the second from all but the beginning.
    first = energy[:, ::-1]
    second = whole - numpy.pad(energy, ((0, 0), (1, 0)))[:, :length]
    return products / numpy.sqrt(numpy.maximum(first * second, 1e-12))


def best_lag(likeness, first, last):
    """The lag at which each row is most like itself, between its own limits, and how much."""
    lags = numpy.arange(likeness.shape[1])
    allowed = (lags >= first[:, None]) & (lags <= last[:, None])
    lag = numpy.argmax(numpy.where(allowed, likeness, -2), axis=1)
    lag = numpy.clip(lag, 1, likeness.shape[1] - 2)
    row = numpy.arange(len(lag))
    before, top, after = (likeness[row, lag + step] for step in (-1, 0, 1))
    bend = before - 2 * top + after
    offset = numpy.where(bend < -1e-9, 0.5 * (before - after) / numpy.where(bend == 0, 1, bend), 0)
    return lag + numpy.clip(offset, -0.5, 0.5), top


def compare_voices(output, output_moments, reference, reference_moments):
    rate = output.rate
    plain = reference.frames(reference_moments, PITCH_WINDOW_SECONDS)
    likeness = self_likeness(plain)
    limits = [numpy.full(len(plain), rate / hertz) for hertz in reversed(PITCH_HERTZ)]
    period, top = best_lag(likeness, *limits)
    voiced = top > VOICED
    period, top, plain = period[voiced], top[voiced], plain[voiced]
    made = output.frames(output_moments[voiced], PITCH_WINDOW_SECONDS)
    other, other_top = best_lag(self_likeness(made), period * 0.8, period * 1.25)
    cents = numpy.median(numpy.abs(1200 * numpy.log2(other / period)))
    lost = numpy.mean(periodicity(top) - periodicity(other_top))
    smear = numpy.mean(crest(plain) - crest(made))
    return cents, lost, smear


def periodicity(likeness):
    likeness = numpy.clip(likeness, 0.1, 0.999)
    return 10 * numpy.log10(likeness / (1 - likeness))


def crest(rows):
    peak = numpy.abs(rows).max(axis=1)
    return 20 * numpy.log10(peak / numpy.sqrt((rows**2).mean(axis=1) + 1e-12) + 1e-12)


def click_at_borders(output, borders):
    """By how many dB the sharpest bend near a border is above the sharpest one anywhere else, in a
    hum that has no sharp places of its own. About 0 is no click."""
    bend = numpy.pad(numpy.abs(numpy.diff(output.samples, 3)), 2)[: len(output.samples)]
    reach = int(BORDER_SECONDS * output.rate)
    near = numpy.zeros(len(bend), dtype=bool)
    for border in borders:
        near[border - reach : border + reach + 1] = True
    # How it begins and ends is no matter of joins.
    edge = int(EDGE_SECONDS * output.rate)
    inner = numpy.arange(len(bend))
    inner = (inner > edge) & (inner < len(bend) - edge)
    return 20 * numpy.log10(bend[near & inner].max() / bend[~near & inner].max())
