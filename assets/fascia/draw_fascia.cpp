// Draws the deck's fascia pictures.
//
//     draw_fascia FOLDER
//
// FOLDER takes one PNG for each face of the table at the end. The same program gives the same
// pixels every time. A face is calm and dark enough for the quietest text that stands on it.

#include <QDir>
#include <QImage>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace {

/// The deck is about four times as wide as high, and a window may be as wide as its screen.
constexpr int kWidth = 1920;
constexpr int kHeight = 480;
/// Of one, in linear light. Lettering of the deck's quiet grey keeps more than 5:1 on it.
constexpr double kBrightest = 0.044;

struct Colour {
  double red;
  double green;
  double blue;
};

constexpr Colour Hex(unsigned rgb) {
  return {(rgb >> 16) / 255.0, (rgb >> 8 & 0xFF) / 255.0, (rgb & 0xFF) / 255.0};
}

Colour Mix(const Colour& a, const Colour& b, double share) {
  const double part = std::clamp(share, 0.0, 1.0);
  return {a.red + (b.red - a.red) * part, a.green + (b.green - a.green) * part,
          a.blue + (b.blue - a.blue) * part};
}

/// Lighter by a share of itself, darker for a negative one.
Colour Lit(const Colour& colour, double share) {
  return {colour.red * (1 + share), colour.green * (1 + share), colour.blue * (1 + share)};
}

double Linear(double part) {
  return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double Luminance(const Colour& colour) {
  return 0.2126 * Linear(colour.red) + 0.7152 * Linear(colour.green) + 0.0722 * Linear(colour.blue);
}

/// From 0 to 1, the same for the same place.
double Grain(int x, int y, int seed) {
  auto mixed = static_cast<std::uint32_t>(x) * 0x9E3779B1u ^
               static_cast<std::uint32_t>(y) * 0x85EBCA77u ^
               static_cast<std::uint32_t>(seed) * 0xC2B2AE3Du;
  mixed = (mixed ^ mixed >> 15) * 0x2C1B3C6Du;
  mixed = (mixed ^ mixed >> 12) * 0x297A2D39u;
  return (mixed ^ mixed >> 15) / 4294967295.0;
}

/// Grain that is one value for each whole place and glides between them.
double Cloud(double x, double y, int seed) {
  const int left = static_cast<int>(std::floor(x));
  const int top = static_cast<int>(std::floor(y));
  const auto ease = [](double t) { return t * t * (3 - 2 * t); };
  const double across = ease(x - left);
  const double down = ease(y - top);
  const auto row = [&](int at) {
    const double first = Grain(left, at, seed);
    return first + (Grain(left + 1, at, seed) - first) * across;
  };
  return row(top) + (row(top + 1) - row(top)) * down;
}

/// Clouds of four sizes on each other, from 0 to 1.
double Billow(double x, double y, int seed) {
  double sum = 0;
  double weight = 0.5;
  for (int octave = 0; octave < 4; ++octave, weight /= 2, x *= 2, y *= 2) {
    sum += weight * Cloud(x, y, seed + octave);
  }
  return sum / 0.9375;
}

double Hump(double distance) { return std::exp(-distance * distance); }

/// The distance to the nearest of points that are strewn one to each whole place.
double ToNearestPoint(double x, double y, int seed) {
  double nearest = 9;
  const int left = static_cast<int>(std::floor(x));
  const int top = static_cast<int>(std::floor(y));
  for (int row = top - 1; row <= top + 1; ++row) {
    for (int column = left - 1; column <= left + 1; ++column) {
      const double dx = column + Grain(column, row, seed) - x;
      const double dy = row + Grain(column, row, seed + 1) - y;
      nearest = std::min(nearest, std::hypot(dx, dy));
    }
  }
  return nearest;
}

// The faces. `u` runs from 0 to 4 across the picture and `v` from 0 to 1 down it.

/// Brushed metal under a lamp.
Colour Anthracite(double u, double v) {
  const Colour metal = Mix(Hex(0x2D3641), Hex(0x161B22), v);
  const double brushed = Cloud(u * 5, v * kHeight / 1.6, 1) - 0.5;
  const double lamp = Hump((u - 0.9) / 1.1) * Hump(v / 0.5);
  return Lit(metal, 0.07 * brushed + 0.1 * lamp);
}

/// Two by two twill, the strands rounded.
Colour Carbon(double u, double v) {
  constexpr double kStrands = 30;
  const double x = u * kStrands;
  const double y = v * kStrands;
  const bool across = (static_cast<int>(x) + static_cast<int>(y)) % 4 < 2;
  const double over = across ? y - std::floor(y) : x - std::floor(x);
  const double round = std::sin(over * 3.14159265);
  const Colour resin = Mix(Hex(0x23262B), Hex(0x121417), v);
  return Lit(resin, (across ? 0.34 : 0.1) * round - 0.16 + 0.12 * Hump((v - 0.1) / 0.3));
}

/// Leather the colour of dark wine.
Colour Cordovan(double u, double v) {
  const double pebble = ToNearestPoint(u * 34, v * 34, 7);
  const double wear = Billow(u * 1.5, v * 1.5, 11) - 0.5;
  const Colour hide = Mix(Hex(0x43201F), Hex(0x1E0E10), v);
  return Lit(hide, 0.16 - 0.36 * pebble + 0.2 * wear);
}

/// Bands of light between trees.
Colour Evergreen(double u, double v) {
  const double slant = u + 0.55 * v + 0.3 * Billow(u, v, 21);
  const double light = Hump(std::sin(slant * 2.1) / 0.55) * (1 - 0.7 * v);
  return Mix(Mix(Hex(0x17352D), Hex(0x0B1917), v), Hex(0x2B5A45), 0.42 * light);
}

/// A sea chart: lines of equal depth, and a fine grid.
Colour Harbour(double u, double v) {
  constexpr double kLines = 14;
  constexpr double kStep = 4.0 / kWidth;
  const auto depthAt = [](double x, double y) { return kLines * Billow(x * 1.1 + 5, y * 1.1, 31); };
  const double depth = depthAt(u, v);
  const double slope = std::hypot(depthAt(u + kStep, v) - depth, depthAt(u, v + kStep) - depth);
  // Where the ground is flat a line would spread to a blot.
  const double line = std::abs(depth - std::round(depth)) / std::max(slope, 0.004);
  const auto grid = [](double at) { return std::abs(at * 6 - std::round(at * 6)) < 0.012; };
  const Colour water = Mix(Hex(0x17324C), Hex(0x0B1725), v);
  return Lit(water, 0.26 * Hump(line / 0.9) + (grid(u) || grid(v) ? 0.12 : 0));
}

/// Northern lights.
Colour Midnight(double u, double v) {
  const double wave = 0.34 + 0.16 * std::sin(u * 1.7 + 0.6) + 0.2 * (Billow(u * 1.2, 0, 41) - 0.5);
  const double rays = 0.55 + 0.45 * Cloud(u * 26, v * 1.5, 43);
  const double below = (v - wave) / (v > wave ? 0.1 : 0.34);
  const double glow = Hump(below) * rays;
  const Colour sky = Mix(Hex(0x101A33), Hex(0x090D18), v);
  return Mix(sky, Mix(Hex(0x2A6B66), Hex(0x4B3A78), 0.5 - 0.5 * below), 0.45 * glow);
}

/// Folds of cloth.
Colour Plum(double u, double v) {
  double fold = 0;
  for (int each = 1; each <= 3; ++each) {
    const double edge = 0.26 * each + 0.13 * std::sin(u * (0.8 + 0.35 * each) + each * 1.9);
    if (v > edge) fold += Hump((v - edge) / 0.22);
  }
  return Mix(Mix(Hex(0x35224A), Hex(0x180F22), v), Hex(0x5A3B73), 0.26 * fold);
}

/// A board of dark walnut, its grain along the deck.
Colour Walnut(double u, double v) {
  const double heart = v + 0.3 * Billow(u * 0.55, v * 0.9, 51) + 0.02 * Billow(u * 5, v * 9, 52);
  const double ring = heart * 8 + 2.2 * Cloud(0, heart * 4, 53);
  const double late =
      std::pow(ring - std::floor(ring), 3) * (0.5 + 0.5 * Grain(0, static_cast<int>(ring), 54));
  const double fibre = Cloud(u * 4, v * 260, 57) - 0.5;
  const double pore = Cloud(u * 16, v * 230, 59) > 0.8 ? 1 : 0;
  const Colour wood =
      Mix(Mix(Hex(0x46301F), Hex(0x53361F), Billow(u, v * 3, 61)), Hex(0x21150D), v);
  return Lit(wood, -0.26 * late + 0.14 * fibre - 0.12 * pore);
}

struct Face {
  const char* name;
  Colour (*at)(double u, double v);
};

/// In the order of their names, which is that of a click; the first is the one of a new deck.
constexpr std::array<Face, 8> kFaces{{{"Anthracite", Anthracite},
                                      {"Carbon", Carbon},
                                      {"Cordovan", Cordovan},
                                      {"Evergreen", Evergreen},
                                      {"Harbour", Harbour},
                                      {"Midnight", Midnight},
                                      {"Plum", Plum},
                                      {"Walnut", Walnut}}};

Colour Calm(Colour colour) {
  while (Luminance(colour) > kBrightest) colour = Lit(colour, -0.02);
  return colour;
}

/// A slope of so few shades would show its steps; a grain of less than one shade hides them.
int Shade(double part, double grain) {
  return std::clamp(static_cast<int>(part * 255 + grain), 0, 255);
}

QImage Draw(const Face& face) {
  QImage picture(kWidth, kHeight, QImage::Format_RGB32);
  for (int y = 0; y < kHeight; ++y) {
    auto* const line = reinterpret_cast<QRgb*>(picture.scanLine(y));
    for (int x = 0; x < kWidth; ++x) {
      const Colour colour = Calm(face.at(4.0 * x / kWidth, 1.0 * y / kHeight));
      const double grain = Grain(x, y, 99);
      line[x] =
          qRgb(Shade(colour.red, grain), Shade(colour.green, grain), Shade(colour.blue, grain));
    }
  }
  return picture;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "draw_fascia FOLDER\n");
    return 2;
  }
  const QDir folder(QString::fromLocal8Bit(arguments[1]));
  if (!folder.mkpath(".")) return 1;
  for (const Face& face : kFaces) {
    const QString path = folder.filePath(QString("%1.png").arg(face.name));
    if (Draw(face).save(path)) continue;
    std::fprintf(stderr, "draw_fascia: %s can not be written\n", qPrintable(path));
    return 1;
  }
  return 0;
}
