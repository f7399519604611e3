#include "tools/chart/svg_document.hpp"

#include "core/channels/printable.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tallowmere::tools {
namespace {

std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : printable(text)) {
        if (c == '&')
            result += "&amp;";
        else if (c == '<')
            result += "&lt;";
        else if (c == '>')
            result += "&gt;";
        else if (c == '"')
            result += "&quot;";
        else
            result += c;
    }
    return result;
}

} // namespace

std::string svgNumber(double value) {
    char text[32];
    const int length = std::snprintf(text, sizeof text, "%.2f", std::isfinite(value) ? value : 0.0);
    return {text, static_cast<std::size_t>(std::clamp(length, 0, 31))};
}

SvgDocument::SvgDocument(double width, double height)
    : svg_("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
           svgNumber(width) + "\" height=\"" + svgNumber(height) + "\" viewBox=\"0 0 " + svgNumber(width) + " " +
           svgNumber(height) + "\" font-family=\"Helvetica, Arial, sans-serif\" font-size=\"13\" fill=\"#222\">\n" +
           "<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n") {}

void SvgDocument::text(double x, double y, std::string_view style, std::string_view content) {
    svg_.append("<text x=\"" + svgNumber(x) + "\" y=\"" + svgNumber(y) + "\" ").append(style);
    svg_ += ">" + escaped(content) + "</text>\n";
}

void SvgDocument::line(double x1, double y1, double x2, double y2, std::string_view style) {
    svg_.append("<line x1=\"" + svgNumber(x1) + "\" y1=\"" + svgNumber(y1) + "\" x2=\"" + svgNumber(x2) + "\" y2=\"" +
                svgNumber(y2) + "\" ");
    svg_.append(style) += "/>\n";
}

void SvgDocument::circle(double x, double y, double radius, std::string_view style) {
    svg_.append("<circle cx=\"" + svgNumber(x) + "\" cy=\"" + svgNumber(y) + "\" r=\"" + svgNumber(radius) + "\" ");
    svg_.append(style) += "/>\n";
}

void SvgDocument::rectangle(double x, double y, double width, double height, std::string_view style) {
    svg_.append("<rect x=\"" + svgNumber(x) + "\" y=\"" + svgNumber(y) + "\" width=\"" + svgNumber(width) +
                "\" height=\"" + svgNumber(height) + "\" ");
    svg_.append(style) += "/>\n";
}

void SvgDocument::beginLine(std::string_view style) {
    svg_.append("<polyline fill=\"none\" stroke-linejoin=\"round\" ").append(style) += " points=\"";
}

void SvgDocument::addPoint(double x, double y) {
    svg_ += svgNumber(x) + "," + svgNumber(y) + " ";
}

void SvgDocument::endLine() {
    svg_ += "\"/>\n";
}

std::string SvgDocument::finish() {
    return std::move(svg_) + "</svg>\n";
}

} // namespace tallowmere::tools
