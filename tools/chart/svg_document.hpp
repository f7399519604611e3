// An SVG document, piece by piece.
#pragma once

#include <string>
#include <string_view>

namespace tallowmere::tools {

/// A number as an attribute's value: two decimals; 0 for what is not finite.
[[nodiscard]] std::string svgNumber(double value);

/// Well-formed whatever texts and numbers it is given. Lengths are in user units, a style is attributes such as
/// stroke="#888".
class SvgDocument {
  public:
    SvgDocument(double width, double height);

    void text(double x, double y, std::string_view style, std::string_view content);
    void line(double x1, double y1, double x2, double y2, std::string_view style);
    void circle(double x, double y, double radius, std::string_view style);
    void rectangle(double x, double y, double width, double height, std::string_view style);
    /// A line through points, not filled.
    void beginLine(std::string_view style);
    void addPoint(double x, double y);
    void endLine();

    /// The whole document. Nothing can be added after it.
    [[nodiscard]] std::string finish();

  private:
    std::string svg_;
};

} // namespace tallowmere::tools
