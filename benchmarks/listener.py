"""An ear at the virtual sound card: when does a sound begin, and when does it end?"""

import array
import subprocess
import threading
import time

RATE = 48000
CHUNK = RATE // 200 * 2  # Bytes of five milliseconds of one channel.
THRESHOLD = 500  # Of 32768; far above the nothing of a silent card.


class Listener:
    """Listens from the start of the block to its end. Moments are on the monotonic clock; they are
    late by what the card's monitor holds back, for whoever is listened to."""

    def __enter__(self):
        self.parec = subprocess.Popen(
            ["parec", "--device=desk.monitor", "--latency-msec=5", "--process-time-msec=5",
             f"--rate={RATE}", "--channels=1", "--format=s16le", "--raw"],
            stdout=subprocess.PIPE,
        )
        self.lock = threading.Condition()
        self.last_loud = 0.0
        self.silent = 1.0
        self.onsets = []
        threading.Thread(target=self._listen, daemon=True).start()
        time.sleep(3)  # A card that nobody read runs ahead; by now its time is true.
        return self

    def __exit__(self, *failure):
        self.parec.terminate()
        self.parec.wait()

    def _listen(self):
        silent = 1.0
        while chunk := self.parec.stdout.read(CHUNK):
            now = time.monotonic()
            samples = array.array("h", chunk)
            loud = next((i for i, value in enumerate(samples) if abs(value) > THRESHOLD), None)
            with self.lock:
                if loud is None:
                    silent += len(samples) / RATE
                    self.silent = silent
                    self.lock.notify_all()
                    continue
                if silent > 0.1:
                    # The chunk was read when its last sample had come.
                    self.onsets.append(now - (len(samples) - loud) / RATE)
                    self.lock.notify_all()
                silent = self.silent = 0.0
                last = max(i for i, value in enumerate(samples) if abs(value) > THRESHOLD)
                self.last_loud = now - (len(samples) - last) / RATE

    def onset_after(self, moment, patience=3.0):
        """The first moment after `moment` at which sound began out of silence; None if none did."""
        deadline = time.monotonic() + patience
        with self.lock:
            while True:
                later = [onset for onset in self.onsets if onset > moment]
                if later:
                    return later[0]
                if not self.lock.wait(max(deadline - time.monotonic(), 0)):
                    return None

    def silence_after(self, moment, patience=3.0):
        """When the sound that there was at `moment` ended; None if it did not end."""
        deadline = time.monotonic() + patience
        with self.lock:
            while self.silent < 0.1 or self.last_loud < moment - 0.1:
                if not self.lock.wait(max(deadline - time.monotonic(), 0)):
                    return None
            return self.last_loud
