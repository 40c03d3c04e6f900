// The tiers as a drawing: lanes over a time axis.
#include "mlds/io/svg.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <ostream>

#include "mlds/io/width.h"

namespace mlds::io {

namespace {

// In pixels.
constexpr double kLeastNameWidth = 90;
constexpr double kMargin = 12;
constexpr double kTitleHeight = 34;
constexpr double kLaneHeight = 30;
constexpr double kLaneGap = 8;
constexpr double kAxisHeight = 34;
constexpr double kLetterWidth = 8.5;

// Pixels per millisecond: enough for nearly every label, within reason.
constexpr double kLeastScale = 0.35;
constexpr double kMostScale = 1.2;

constexpr const char* kColours[] = {"#e8eef7", "#dde9f5", "#e6f2e6",
                                    "#fdf0dc", "#f3e6f2", "#eeeeee"};
constexpr const char* kHighlightColour = "#f7c873";

std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
            case '&': escaped += "&amp;"; break;
            case '<': escaped += "&lt;"; break;
            case '>': escaped += "&gt;"; break;
            case '"': escaped += "&quot;"; break;
            default: escaped += c;
        }
    }
    return escaped;
}

// The lanes begin behind the longest name.
double NameWidthFor(const Timeline& timeline) {
    double width = kLeastNameWidth;
    for (const TimedTier& tier : timeline.tiers) {
        width = std::max(width, static_cast<double>(Columns(tier.name)) * kLetterWidth + 14);
    }
    return width;
}

double ScaleFor(const Timeline& timeline) {
    double scale = kLeastScale;
    for (const TimedTier& tier : timeline.tiers) {
        for (const TimedLabel& label : tier.labels) {
            const double width = static_cast<double>(Columns(label.text)) * kLetterWidth + 6;
            if (!label.text.empty()) scale = std::max(scale, width / (label.end - label.begin));
        }
    }
    return std::min(scale, kMostScale);
}

std::string Number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", value);
    return text;
}

class Drawing {
public:
    Drawing(const Timeline& timeline, std::ostream& out)
        : m_tiers(timeline.tiers),
          m_out(out),
          m_nameWidth(NameWidthFor(timeline)),
          m_scale(ScaleFor(timeline)),
          m_end(timeline.end) {}

    void Write(const std::string& title) {
        const double lanes = static_cast<double>(m_tiers.size()) * (kLaneHeight + kLaneGap);
        const double width = X(m_end) + kMargin + 20;
        const double height = kTitleHeight + lanes + kAxisHeight;
        m_out << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << Number(width)
              << "\" height=\"" << Number(height) << "\" font-family=\"sans-serif\" "
              << "font-size=\"14\">\n"
              << "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
        Text(kMargin, 22, "start", "font-weight=\"bold\"", title);
        Guides(kTitleHeight + lanes);
        double y = kTitleHeight;
        for (std::size_t i = 0; i < m_tiers.size(); ++i, y += kLaneHeight + kLaneGap) {
            Text(kMargin, y + kLaneHeight / 2 + 5, "start", "fill=\"#555\"", m_tiers[i].name);
            Lane(m_tiers[i], kColours[i % std::size(kColours)], y);
        }
        Axis(y);
        m_out << "</svg>\n";
    }

private:
    double X(double milliseconds) const { return kMargin + m_nameWidth + milliseconds * m_scale; }

    void Line(double x1, double y1, double x2, double y2, const char* colour) {
        m_out << "<line x1=\"" << Number(x1) << "\" y1=\"" << Number(y1) << "\" x2=\"" << Number(x2)
              << "\" y2=\"" << Number(y2) << "\" stroke=\"" << colour << "\"/>\n";
    }

    void Text(double x, double y, const char* anchor, const char* style, const std::string& text) {
        m_out << "<text x=\"" << Number(x) << "\" y=\"" << Number(y) << "\" text-anchor=\""
              << anchor << "\" " << style << '>' << Escaped(text) << "</text>\n";
    }

    // Lines through all lanes, where the tokens of a lane that asks for them begin and end.
    void Guides(double bottom) {
        for (const TimedTier& tier : m_tiers) {
            if (!tier.bGuides) continue;
            Line(X(0), kTitleHeight - 4, X(0), bottom, "#bbb");
            for (const TimedLabel& label : tier.labels) {
                Line(X(label.end), kTitleHeight - 4, X(label.end), bottom, "#bbb");
            }
        }
    }

    void Lane(const TimedTier& tier, const char* colour, double y) {
        for (const TimedLabel& label : tier.labels) {
            const double width = (label.end - label.begin) * m_scale;
            const bool bEmpty = label.text.empty();
            m_out << "<rect x=\"" << Number(X(label.begin)) << "\" y=\"" << Number(y)
                  << "\" width=\"" << Number(width) << "\" height=\"" << Number(kLaneHeight)
                  << "\" stroke=\"#888\" fill=\""
                  << (bEmpty               ? "none"
                      : label.bHighlighted ? kHighlightColour
                                           : colour)
                  << "\"/>\n";
            if (bEmpty) continue;
            const double needed = static_cast<double>(Columns(label.text)) * kLetterWidth;
            const bool bNarrow = needed > width;
            Text(X(label.begin) + width / 2, y + kLaneHeight / 2 + 5, "middle",
                 bNarrow ? "font-size=\"9\"" : "", label.text);
        }
    }

    // A tick every 100 milliseconds, a number every 500.
    void Axis(double y) {
        Line(X(0), y, X(m_end), y, "#333");
        for (int tick = 0; tick <= m_end; tick += 100) {
            const bool bNumber = tick % 500 == 0;
            Line(X(tick), y, X(tick), y + (bNumber ? 8 : 4), "#333");
            if (bNumber) {
                Text(X(tick), y + 22, "middle", "font-size=\"11\"", Number(tick / 1000.0) + " s");
            }
        }
    }

    const std::vector<TimedTier>& m_tiers;
    std::ostream& m_out;
    double m_nameWidth;
    double m_scale;
    double m_end;
};

}  // namespace

void WriteSvg(const Timeline& timeline, const std::string& title, std::ostream& out) {
    Drawing(timeline, out).Write(Cleaned(title));
}

}  // namespace mlds::io
