// Digests of what the curves give on two and a half million inputs. Every compiler and platform must print the same:
//   curve_bits FILE   compares with the digests in FILE; exit code 1 and the differing lines otherwise
//   curve_bits        prints them
#include "calibration/curve.hpp"

#include <bit>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

using namespace tallowmere;

namespace {

/// Order and every bit count (FNV-1a). All NaN are one: which operand's NaN a sum passes on is left to the compiler.
class Digest {
  public:
    void add(double value) noexcept {
        add(std::isnan(value) ? ~std::uint64_t{0} : std::bit_cast<std::uint64_t>(value));
    }
    void add(std::uint64_t bits) noexcept {
        for (int byte = 0; byte < 8; ++byte) {
            hash_ = (hash_ ^ (bits & 0xFF)) * 0x100000001B3;
            bits >>= 8;
        }
    }
    [[nodiscard]] std::uint64_t hash() const noexcept { return hash_; }

  private:
    std::uint64_t hash_ = 0xCBF29CE484222325;
};

/// The standard's generator, whose numbers are the same everywhere; its distributions are not.
class Inputs {
  public:
    explicit Inputs(std::uint64_t seed) : random_(seed) {}
    [[nodiscard]] double between(double low, double high) {
        return low + (high - low) * (static_cast<double>(random_() >> 11) * 0x1p-53);
    }
    [[nodiscard]] std::size_t below(std::size_t count) { return static_cast<std::size_t>(random_() % count); }
    [[nodiscard]] bool oneIn(std::size_t count) { return below(count) == 0; }
    /// Any bits at all: subnormals, infinities and NaN among them.
    [[nodiscard]] double anything() { return std::bit_cast<double>(random_()); }

  private:
    std::mt19937_64 random_;
};

CurveRow anyRow(Inputs& inputs) {
    CurveRow row;
    row.rowValue = inputs.between(-40, 40);
    const bool descending = inputs.oneIn(4);
    double x = inputs.between(-200, 200);
    for (std::size_t k = 1 + inputs.below(16); k > 0; --k) {
        const double y = inputs.oneIn(20) ? NO_VALUE : inputs.between(-5, 5);
        row.knots.push_back({inputs.oneIn(200) ? inputs.anything() : x, y, NO_VALUE});
        const double step = inputs.oneIn(30) ? 0.0 : inputs.between(1e-3, 20);
        x += descending ? -step : step;
    }
    row.dirty = 1;
    return row;
}

double anyPosition(Inputs& inputs) {
    return inputs.oneIn(50) ? inputs.anything() : inputs.between(-300, 300);
}

std::string line(const char* name, const Digest& digest) {
    char text[64];
    std::snprintf(text, sizeof text, "%s %016llX\n", name, static_cast<unsigned long long>(digest.hash()));
    return text;
}

std::string rowDigests() {
    Digest built, spline, straight;
    Inputs inputs(1);
    for (int n = 0; n < 20000; ++n) {
        CurveRow row = anyRow(inputs);
        BuildSpline(row);
        for (const CurveKnot& knot : row.knots) built.add(knot.y2);
        for (int k = 0; k < 40; ++k) {
            const double x = anyPosition(inputs);
            double y = 0.0;
            spline.add(std::uint64_t{EvalSpline(row, x, y)});
            spline.add(y);
            straight.add(std::uint64_t{EvalLinear(row, x, y)});
            straight.add(y);
        }
    }
    return line("BuildSpline", built) + line("EvalSpline", spline) + line("EvalLinear", straight);
}

std::string tableDigest() {
    Digest digest;
    Inputs inputs(2);
    for (int n = 0; n < 10000; ++n) {
        CalibrationTable table;
        for (std::size_t rows = 1 + inputs.below(6); rows > 0; --rows) table.rows.push_back(anyRow(inputs));
        table.linear = inputs.oneIn(3) ? 1 : 0;
        BuildSplines(table);
        for (int k = 0; k < 40; ++k) {
            const double x = anyPosition(inputs);
            const double r = inputs.oneIn(10) ? NO_VALUE : anyPosition(inputs);
            double y = 0.0;
            digest.add(std::uint64_t{EvalTable(table, x, r, y)});
            digest.add(y);
        }
    }
    return line("EvalTable", digest);
}

std::string blendDigest() {
    Digest digest;
    Inputs inputs(3);
    for (int n = 0; n < 500000; ++n) {
        double points[5];
        for (double& point : points) point = inputs.oneIn(50) ? inputs.anything() : inputs.between(-10, 10);
        double y = 0.0;
        digest.add(std::uint64_t{BlendRows(points[0], points[1], points[2], points[3], points[4], y)});
        digest.add(y);
    }
    return line("BlendRows", digest);
}

} // namespace

int main(int count, char** arguments) {
    const std::string digests = rowDigests() + tableDigest() + blendDigest();
    if (count < 2) {
        std::fputs(digests.c_str(), stdout);
        return 0;
    }
    std::ifstream file(arguments[1]);
    std::stringstream expected;
    expected << file.rdbuf();
    std::istringstream ours(digests);
    bool same = static_cast<bool>(file);
    for (std::string here, there; std::getline(ours, here);) {
        const bool found = static_cast<bool>(std::getline(expected, there));
        if (found && there == here) continue;
        std::fprintf(stderr, "%s: expected %s, got %s\n", arguments[1], found ? there.c_str() : "no more",
                     here.c_str());
        same = false;
    }
    return same ? 0 : 1;
}
