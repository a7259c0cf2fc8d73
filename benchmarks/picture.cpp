#include "samples.h"
#include "summary.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr char blue[] = "#1f5fa8";
constexpr char grey[] = "#8a8a8a";
constexpr char red[] = "#c0392b";
constexpr char black[] = "#222222";

constexpr double width = 900;
constexpr double margin = 20;

/** The elements of a picture, in pixels from the top left. */
class Svg {
public:
    void text(double x, double y, const std::string& text, const char* anchor = "start", const char* colour = black) {
        body += "<text" + at("x", x) + at("y", y) + " fill='" + colour + "' text-anchor='" + anchor + "'>" + text
                + "</text>";
    }

    void line(double x1, double y1, double x2, double y2, const char* colour, double thickness = 1) {
        body += "<line" + at("x1", x1) + at("y1", y1) + at("x2", x2) + at("y2", y2) + " stroke='" + colour + '\''
                + at("stroke-width", thickness) + "/>";
    }

    void dot(double x, double y, const char* colour) {
        body += "<circle" + at("cx", x) + at("cy", y) + at("r", 3.5) + " fill='" + colour + "'/>";
    }

    /** The whole file. */
    QByteArray content(double height) const {
        const std::string size = at("width", width) + at("height", height);
        return QByteArray::fromStdString("<svg xmlns='http://www.w3.org/2000/svg'" + size
                                         + " font-family='sans-serif' font-size='12'>\n<rect" + size + " fill='white'/>"
                                         + body + "</svg>\n");
    }

private:
    static std::string at(const char* name, double value) {
        return ' ' + (name + ("='" + format("%.1f", value))) + '\'';
    }

    std::string body;
};

/** A row for each operation and peer, on a logarithmic scale. @return the bottom */
double drawRatios(Svg& svg, const std::vector<Ratios>& rows, double top) {
    constexpr double left = 380;
    constexpr double right = width - 90;
    constexpr double least = 0.03;
    constexpr double most = 5;
    constexpr double rowHeight = 18;
    const auto xOf = [=](double ratio) {
        return left + (right - left) * std::log(std::clamp(ratio, least, most) / least) / std::log(most / least);
    };
    svg.text(margin, top, "Our time divided by the peer's. Dot: the median of the inputs; line: up to the worst;");
    svg.text(margin, top + 15, "grey stroke: the largest accepted ratio. Below 1 the library is faster.");
    const double axis = top + 40;
    const double bottom = axis + rowHeight * double(rows.size()) + 4;
    for (const double mark : {0.05, 0.1, 0.2, 0.5, 1.0, 2.0, 4.0}) {
        svg.line(xOf(mark), axis + 4, xOf(mark), bottom, mark == 1 ? black : "#dddddd");
        svg.text(xOf(mark), axis, format("%g", mark), "middle");
    }
    double y = axis;
    for (const Ratios& row : rows) {
        y += rowHeight;
        const char* const colour = row.holds() ? blue : red;
        const std::string input = row.inputs.size() == 1 ? ", " + row.inputs.front() : "";
        svg.text(left - 10, y, row.operation + input + " / " + row.peer, "end");
        svg.line(xOf(row.median()), y - 4, xOf(row.worst()), y - 4, colour, 2);
        svg.dot(xOf(row.median()), y - 4, colour);
        svg.line(xOf(row.target.each), y - 10, xOf(row.target.each), y + 2, grey, 2);
        const std::string worst = row.inputs.size() == 1 ? "" : format(" to %.2f", row.worst());
        svg.text(right + 10, y, format("%.2f", row.median()) + worst);
    }
    return bottom;
}

/** A small chart of one series: the time for each unit of work, by size. */
void drawSeries(Svg& svg, const Growth& growth, double left, double top, double chartWidth, double chartHeight) {
    const double bottom = top + chartHeight;
    svg.text(left, top - 6, growth.operation + ", " + growth.series, "start", growth.holds() ? black : red);
    svg.line(left, bottom, left + chartWidth, bottom, grey);
    svg.line(left, top, left, bottom, grey);
    const double most = 1.25
                        * std::max(*std::max_element(growth.ours.begin(), growth.ours.end()),
                            *std::max_element(growth.peers.begin(), growth.peers.end()));
    const auto draw = [&](const std::vector<double>& times, const char* colour) {
        const double step = chartWidth / double(times.size());
        for (std::size_t i = 0; i < times.size(); ++i) {
            const auto xOf = [&](std::size_t index) { return left + step * (double(index) + 0.5); };
            const auto yOf = [&](double time) { return bottom - chartHeight * time / most; };
            if (i > 0) { svg.line(xOf(i - 1), yOf(times[i - 1]), xOf(i), yOf(times[i]), colour, 2); }
            svg.dot(xOf(i), yOf(times[i]), colour);
        }
    };
    draw(growth.peers, grey);
    draw(growth.ours, blue);
    svg.text(left + 4, top + 10, duration(most));
    svg.line(left - 4, top, left, top, grey);
    svg.text(left, bottom + 14, growth.inputs.front());
    svg.text(left + chartWidth, bottom + 14, growth.inputs.back(), "end");
}

/** @return the bottom */
double drawGrowths(Svg& svg, const std::vector<Growth>& growths, double top) {
    constexpr int chartsInRow = 5;
    constexpr double pitch = (width - 2 * margin) / chartsInRow;
    constexpr double rowHeight = 145;
    svg.text(margin, top, "The time for each character or table row, by the size of the text. Blue: the library;");
    svg.text(margin, top + 15, "grey: the floor or the plain reader. A level line is linear growth.");
    double y = top + 45;
    for (std::size_t i = 0; i < growths.size(); ++i) {
        drawSeries(svg, growths[i], margin + pitch * double(i % chartsInRow), y, pitch - 24, rowHeight - 55);
        if (i % chartsInRow == chartsInRow - 1 || i + 1 == growths.size()) { y += rowHeight; }
    }
    return y - 20;
}

} // namespace

void writePicture(const Report& report, const char* fileName) {
    Svg svg;
    double bottom = drawRatios(svg, report.ratios, margin + 5);
    if (!report.growths.empty()) { bottom = drawGrowths(svg, report.growths, bottom + 40); }
    writeFile(QString::fromLocal8Bit(fileName), svg.content(bottom + margin));
}
