#include "engines/RedactedDrawing.hpp"

#include "engines/ContentMatrix.hpp"

#include <qpdf/Buffer.hh>
#include <qpdf/BufferInputSource.hh>
#include <qpdf/QPDFTokenizer.hh>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <set>

namespace quillet {
namespace {

using Matrix = ContentMatrix;

const std::set<std::string> constructing{"m", "l", "c", "v", "y", "h", "re"};
const std::set<std::string> painting{"S", "s", "f", "F", "f*", "B", "B*", "b", "b*", "n"};
const std::set<std::string> stroking{"S", "s", "B", "B*", "b", "b*"};

struct State {
    Matrix ctm{1, 0, 0, 1, 0, 0};
    double lineWidth = 1;
};

// A path being built: its text so far and the extent of its points in user space.
struct Path {
    std::string text;
    double x0 = std::numeric_limits<double>::max(), y0 = std::numeric_limits<double>::max();
    double x1 = std::numeric_limits<double>::lowest(), y1 = std::numeric_limits<double>::lowest();
    bool clips = false;

    void add(double x, double y, const Matrix& m) {
        const auto [ux, uy] = transformed(x, y, m);
        x0 = std::min(x0, ux), y0 = std::min(y0, uy), x1 = std::max(x1, ux), y1 = std::max(y1, uy);
    }
    bool empty() const { return x0 > x1; }
};

std::vector<double> numbers(const std::vector<QPDFTokenizer::Token>& operands) {
    std::vector<double> values;
    for (const auto& token : operands) {
        if (token.getType() == QPDFTokenizer::tt_integer || token.getType() == QPDFTokenizer::tt_real) {
            values.push_back(std::strtod(token.getValue().c_str(), nullptr));
        }
    }
    return values;
}

} // namespace

std::string RedactedDrawing::withoutPathsUnder(const std::string& content,
                                               const std::vector<Area>& areas, int& removed) {
    if (areas.empty()) {
        return content;
    }
    Buffer buffer(reinterpret_cast<unsigned char*>(const_cast<char*>(content.data())),
                  content.size());
    auto input = std::make_shared<BufferInputSource>("content", &buffer);
    QPDFTokenizer tokenizer;
    tokenizer.allowEOF();
    tokenizer.includeIgnorable(); // white space and comments come back, and are kept
    std::string out;
    std::vector<QPDFTokenizer::Token> operands;
    std::string pending; // operands' text since the last operator
    std::vector<State> saved;
    State state;
    Path path;
    bool inPath = false;
    const auto underAnArea = [&](const Path& p, double widen) {
        return std::any_of(areas.begin(), areas.end(), [&](const Area& a) {
            return p.x0 - widen >= a.x0 && p.x1 + widen <= a.x1 && p.y0 - widen >= a.y0 &&
                   p.y1 + widen <= a.y1;
        });
    };
    std::size_t consumed = 0;
    try {
        while (true) {
            const auto token = tokenizer.readToken(input, "content", true);
            const auto type = token.getType();
            if (type == QPDFTokenizer::tt_eof) {
                consumed = content.size();
                break;
            }
            if (type == QPDFTokenizer::tt_bad) {
                break;
            }
            if (type != QPDFTokenizer::tt_word) {
                pending += token.getRawValue();
                if (type != QPDFTokenizer::tt_space && type != QPDFTokenizer::tt_comment) {
                    operands.push_back(token);
                }
                continue;
            }
            const std::string op = token.getValue();
            std::string text = pending + token.getRawValue();
            pending.clear();
            const auto values = numbers(operands);
            operands.clear();
            if (op == "ID") {
                // An inline image: its data is copied as it is, up to and with its EI.
                char separator = ' ';
                input->read(&separator, 1);
                tokenizer.expectInlineImage(input);
                const auto data = tokenizer.readToken(input, "inline image", true);
                text += separator + data.getRawValue();
            } else if (constructing.count(op)) {
                if (!inPath) {
                    path = Path{};
                    inPath = true;
                }
                path.text += text;
                if (op == "re" && values.size() == 4) {
                    path.add(values[0], values[1], state.ctm);
                    path.add(values[0] + values[2], values[1] + values[3], state.ctm);
                    path.add(values[0], values[1] + values[3], state.ctm);
                    path.add(values[0] + values[2], values[1], state.ctm);
                } else {
                    for (std::size_t i = 0; i + 1 < values.size(); i += 2) {
                        path.add(values[i], values[i + 1], state.ctm);
                    }
                }
                consumed = static_cast<std::size_t>(input->tell());
                continue;
            } else if (inPath && (op == "W" || op == "W*")) {
                path.clips = true;
                path.text += text;
                consumed = static_cast<std::size_t>(input->tell());
                continue;
            } else if (inPath && painting.count(op)) {
                inPath = false;
                const double scale = std::sqrt(std::abs(state.ctm[0] * state.ctm[3] -
                                                        state.ctm[1] * state.ctm[2]));
                const double widen = stroking.count(op) ? state.lineWidth * scale / 2 : 0;
                if (!path.clips && op != "n" && !path.empty() && underAnArea(path, widen)) {
                    ++removed;
                    consumed = static_cast<std::size_t>(input->tell());
                    continue;
                }
                text = path.text + text;
            } else if (op == "q") {
                saved.push_back(state);
            } else if (op == "Q") {
                if (!saved.empty()) {
                    state = saved.back();
                    saved.pop_back();
                }
            } else if (op == "cm" && values.size() == 6) {
                state.ctm = concatenated({values[0], values[1], values[2], values[3], values[4],
                                          values[5]},
                                         state.ctm);
            } else if (op == "w" && values.size() == 1) {
                state.lineWidth = values[0];
            }
            if (inPath) {
                // An operator inside a path that is none of the above: the path stays as it is.
                out += path.text;
                inPath = false;
            }
            out += text;
            consumed = static_cast<std::size_t>(input->tell());
        }
    } catch (const std::exception&) {
        // Damaged content: kept as it is from where it stopped making sense.
    }
    if (inPath) {
        out += path.text;
    }
    if (consumed >= content.size()) {
        out += pending;
    } else {
        out.append(content, consumed, std::string::npos); // the operands read since included
    }
    return out;
}

std::string RedactedDrawing::clipBefore(const std::vector<Area>& areas) {
    std::string out = "q\n";
    // Each clip is everything but one area (even-odd: a vast box with the area as its hole);
    // clips intersect, so together they leave out every area.
    for (const Area& a : areas) {
        out += fmt::format("-100000 -100000 200000 200000 re {:.4f} {:.4f} {:.4f} {:.4f} re W* n\n",
                           a.x0, a.y0, a.x1 - a.x0, a.y1 - a.y0);
    }
    return out;
}

std::string RedactedDrawing::fillAfter(const std::vector<Area>& areas,
                                       const std::optional<Colour>& fill) {
    std::string out = "\nQ\n";
    if (!fill) {
        return out;
    }
    out += fmt::format("q {:.4f} {:.4f} {:.4f} rg\n", fill->r, fill->g, fill->b);
    for (const Area& a : areas) {
        out += fmt::format("{:.4f} {:.4f} {:.4f} {:.4f} re f\n", a.x0, a.y0, a.x1 - a.x0,
                           a.y1 - a.y0);
    }
    out += "Q\n";
    return out;
}

} // namespace quillet
