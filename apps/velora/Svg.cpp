#include "Svg.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace velora::cli {
namespace {

struct Colour {
  const char* selector;
  const char* property;
  const char* light;
  const char* dark;
};

// Chosen to stay apart for eyes that see red and green alike.
constexpr Colour kColours[] = {
    {".page", "fill", "#ffffff", "#14171c"},     {".title", "fill", "#14171c", "#f2f4f8"},
    {".name", "fill", "#14171c", "#f2f4f8"},     {".text", "fill", "#3a4250", "#c3cad6"},
    {".faint", "fill", "#76808f", "#8b95a5"},    {".grid", "stroke", "#e4e8ee", "#2a3038"},
    {".axis", "stroke", "#9aa4b2", "#596473"},   {".band", "fill", "#eef0f4", "#20252d"},
    {".wave", "fill", "#8fb8e8", "#2f5f96"},     {".core", "fill", "#2f6fb5", "#7db4f0"},
    {".event", "stroke", "#c2410c", "#fb923c"},  {".tag", "fill", "#c2410c", "#fb923c"},
    {".tagText", "fill", "#ffffff", "#14171c"},  {".lane0", "stroke", "#2f6fb5", "#7db4f0"},
    {".fill0", "fill", "#2f6fb5", "#7db4f0"},    {".lane1", "stroke", "#c2410c", "#fb923c"},
    {".fill1", "fill", "#c2410c", "#fb923c"},    {".lane2", "stroke", "#0f766e", "#2dd4bf"},
    {".fill2", "fill", "#0f766e", "#2dd4bf"},    {".lane3", "stroke", "#7c3aed", "#b794f6"},
    {".fill3", "fill", "#7c3aed", "#b794f6"},    {".lane4", "stroke", "#a16207", "#eab308"},
    {".fill4", "fill", "#a16207", "#eab308"},    {".lane5", "stroke", "#be185d", "#f472b6"},
    {".fill5", "fill", "#be185d", "#f472b6"},    {".laneRed", "stroke", "#d32f2f", "#ff6b6b"},
    {".inkRed", "fill", "#d32f2f", "#ff6b6b"},   {".laneGreen", "stroke", "#2e8b3d", "#4ade80"},
    {".inkGreen", "fill", "#2e8b3d", "#4ade80"}, {".laneBlue", "stroke", "#2962d9", "#6ea8ff"},
    {".inkBlue", "fill", "#2962d9", "#6ea8ff"},  {".laneStep", "stroke", "#14171c", "#f2f4f8"},
};

std::string ColourRules(bool dark) {
  std::string rules;
  for (const Colour& colour : kColours) {
    rules.append(colour.selector).append("{").append(colour.property).append(":");
    rules.append(dark ? colour.dark : colour.light).append("}");
  }
  return rules;
}

std::string StyleSheet(SvgTheme theme) {
  std::string sheet =
      "text{font-family:system-ui,'DejaVu Sans',sans-serif;font-size:12px}"
      ".title{font-size:16px;font-weight:600}.name{font-size:13px;font-weight:600}.tagText{font-"
      "size:10px}"
      ".grid,.axis,.event{stroke-width:1}.event{stroke-opacity:.75}"
      "[class^=lane]{fill:none;stroke-width:1.6;stroke-linejoin:round}"
      ".laneStep{stroke-width:1;stroke-opacity:.7}"
      "[class^=fill]{fill-opacity:.18}.swatch{shape-rendering:crispEdges}.hint{fill-opacity:0}";
  sheet += ColourRules(theme == SvgTheme::kDark);
  if (theme == SvgTheme::kAuto) {
    sheet += "@media (prefers-color-scheme:dark){" + ColourRules(true) + "}";
  }
  return sheet;
}

std::string Class(std::string_view style) { return Attribute("class", style); }

}  // namespace

std::string SvgNumber(double value) {
  if (!std::isfinite(value)) return "0";
  std::array<char, 64> buffer;
  const double rounded = std::round(value * 100) / 100;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), rounded,
                                 std::chars_format::fixed, 2);
  std::string text(buffer.data(), end.ptr);
  text.resize(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text == "-0" ? "0" : text;
}

std::string SvgText(std::string_view text) {
  std::string safe;
  for (const char c : text) {
    switch (c) {
      case '&':
        safe += "&amp;";
        break;
      case '<':
        safe += "&lt;";
        break;
      case '>':
        safe += "&gt;";
        break;
      case '"':
        safe += "&quot;";
        break;
      default:
        if (static_cast<unsigned char>(c) >= 0x20) safe += c;
    }
  }
  return safe;
}

std::string Attribute(std::string_view name, std::string_view value) {
  return " " + std::string(name) + "=\"" + SvgText(value) + "\"";
}
std::string Attribute(std::string_view name, double value) {
  return Attribute(name, std::string_view(SvgNumber(value)));
}

SvgTheme SvgThemeOf(std::string_view name) {
  if (name == "light") return SvgTheme::kLight;
  return name == "dark" ? SvgTheme::kDark : SvgTheme::kAuto;
}

SvgPicture::SvgPicture(double width, double height, SvgTheme theme) {
  out_ = "<svg xmlns=\"http://www.w3.org/2000/svg\"" + Attribute("width", width) +
         Attribute("height", height) +
         Attribute("viewBox", "0 0 " + SvgNumber(width) + " " + SvgNumber(height)) + ">\n<style>" +
         StyleSheet(theme) + "</style>\n";
  Rectangle("page", 0, 0, width, height);
}

void SvgPicture::Rectangle(std::string_view style, double x, double y, double width, double height,
                           double radius) {
  out_ += "<rect" + Class(style) + Attribute("x", x) + Attribute("y", y) +
          Attribute("width", width) + Attribute("height", height);
  if (radius > 0) out_ += Attribute("rx", radius);
  out_ += "/>\n";
}

void SvgPicture::Swatch(uint32_t colour, double x, double y, double width, double height) {
  std::array<char, 8> text;
  (void)std::snprintf(text.data(), text.size(), "#%06x", static_cast<unsigned>(colour & 0xFFFFFF));
  out_ += "<rect" + Class("swatch") + Attribute("fill", std::string_view(text.data())) +
          Attribute("x", x) + Attribute("y", y) + Attribute("width", width) +
          Attribute("height", height) + "/>\n";
}

void SvgPicture::Line(std::string_view style, double x1, double y1, double x2, double y2) {
  out_ += "<line" + Class(style) + Attribute("x1", x1) + Attribute("y1", y1) + Attribute("x2", x2) +
          Attribute("y2", y2) + "/>\n";
}

void SvgPicture::PathOf(std::string_view style, std::string_view path) {
  out_ += "<path" + Class(style) + Attribute("d", path) + "/>\n";
}

void SvgPicture::Text(std::string_view style, double x, double y, std::string_view text,
                      Anchor anchor) {
  out_ += "<text" + Class(style) + Attribute("x", x) + Attribute("y", y);
  if (anchor == Anchor::kMiddle) out_ += Attribute("text-anchor", "middle");
  if (anchor == Anchor::kEnd) out_ += Attribute("text-anchor", "end");
  out_ += ">" + SvgText(text) + "</text>\n";
}

void SvgPicture::Hint(double x, double y, double width, double height, std::string_view title) {
  out_ += "<rect" + Class("hint") + Attribute("x", x) + Attribute("y", y) +
          Attribute("width", width) + Attribute("height", height) + "><title>" + SvgText(title) +
          "</title></rect>\n";
}

std::string SvgPicture::Finish() && { return std::move(out_) + "</svg>\n"; }

}  // namespace velora::cli
