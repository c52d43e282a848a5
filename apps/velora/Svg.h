// Writing SVG pictures.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velora::cli {

/// A number as pictures need it: two decimals at the most, no trailing zeros.
std::string SvgNumber(double value);

/// Text with the characters that mean something in XML replaced, and others that
/// XML does not allow left out.
std::string SvgText(std::string_view text);

/// One value of an attribute list: Attribute("x", 3) is ` x="3"`.
std::string Attribute(std::string_view name, double value);
std::string Attribute(std::string_view name, std::string_view value);

/// The background that a picture is made for.
enum class SvgTheme {
  kAuto,  ///< as the viewer prefers, light where it prefers nothing
  kLight,
  kDark,
};

/// Parses "auto", "light", "dark"; anything else is auto.
SvgTheme SvgThemeOf(std::string_view name);

/// A picture under construction. Coordinates are pixels from the top left corner.
/// Colours come from the classes of the style sheet, so that one picture serves
/// light and dark backgrounds:
///
///   title name text faint words, and words that stand back
///   grid axis             lines of the scale
///   band wave core        the fields of a waveform: silence, extremes, mean level
///   event tag tagText     event lines and their labels
///   lane0 to lane5        strokes of curves; fill0 to fill5 the same as areas
///   laneRed inkRed        the channels of a colour, as strokes and as words; also
///                         with Green and Blue
///   laneStep              a thin stroke over another curve
class SvgPicture {
 public:
  SvgPicture(double width, double height, SvgTheme theme);

  void Rectangle(std::string_view style, double x, double y, double width, double height,
                 double radius = 0);
  /// A rectangle in a colour of its own, 0xRRGGBB, whatever the theme.
  void Swatch(uint32_t colour, double x, double y, double width, double height);
  void Line(std::string_view style, double x1, double y1, double x2, double y2);
  /// `path` in the notation of SVG.
  void PathOf(std::string_view style, std::string_view path);
  enum class Anchor { kStart, kMiddle, kEnd };
  void Text(std::string_view style, double x, double y, std::string_view text,
            Anchor anchor = Anchor::kStart);
  /// A rectangle that shows `title` when pointed at.
  void Hint(double x, double y, double width, double height, std::string_view title);

  /// The whole document.
  std::string Finish() &&;

 private:
  std::string out_;
};

}  // namespace velora::cli
