#include "engines/fonts/Type2Encoder.hpp"

#include "engines/fonts/FontProgramError.hpp"

#include <algorithm>
#include <numeric>

namespace quillet::fonts {
namespace {

// The Type 2 operand stack holds 48 values; one place stays free for the width.
constexpr std::size_t maxArgs = 47;

enum Op : std::uint8_t {
    hstem = 1,
    vstem = 3,
    vmoveto = 4,
    rlineto = 5,
    hlineto = 6,
    vlineto = 7,
    rrcurveto = 8,
    endchar = 14,
    hstemhm = 18,
    hintmask = 19,
    vstemhm = 23,
    rmoveto = 21,
    hmoveto = 22,
    vvcurveto = 26,
    hhcurveto = 27,
    vhcurveto = 30,
    hvcurveto = 31,
};

using Curve = std::array<Fixed, 6>;
enum { dxa, dya, dxb, dyb, dxc, dyc };

struct Chain {
    std::size_t length = 0;
    std::vector<Fixed> args;
    Op op = rrcurveto;
};

class Encoder {
  public:
    std::string out;

    void emit(const std::vector<Fixed>& args, Op op) {
        for (const Fixed value : args) {
            appendType2Number(out, value);
        }
        out.push_back(static_cast<char>(op));
    }

    void stems(std::vector<Stem> list, Op op) {
        std::sort(list.begin(), list.end(), [](const Stem& a, const Stem& b) {
            return a.position != b.position ? a.position < b.position : a.width < b.width;
        });
        for (std::size_t at = 0; at < list.size();) {
            std::vector<Fixed> args;
            Fixed edge = 0; // each operator starts its relative positions again from zero
            for (; at < list.size() && args.size() + 2 <= maxArgs; ++at) {
                args.push_back(list[at].position - edge);
                args.push_back(list[at].width);
                edge = list[at].position + list[at].width;
            }
            emit(args, op);
        }
    }

    void move(const PathOp& op) {
        if (op.d[1] == 0) {
            emit({op.d[0]}, hmoveto);
        } else if (op.d[0] == 0) {
            emit({op.d[1]}, vmoveto);
        } else {
            emit({op.d[0], op.d[1]}, rmoveto);
        }
    }

    // Lines that alternate horizontal and vertical take one value each.
    std::size_t lines(const std::vector<PathOp>& ops, std::size_t at, std::size_t end) {
        const auto axis = [&](std::size_t i, bool horizontal) {
            return horizontal ? ops[i].d[1] == 0 : ops[i].d[0] == 0;
        };
        std::vector<Fixed> args;
        if (axis(at, true) || axis(at, false)) {
            const bool horizontalFirst = axis(at, true);
            bool horizontal = horizontalFirst;
            for (; at < end && axis(at, horizontal) && args.size() < maxArgs; ++at) {
                args.push_back(ops[at].d[horizontal ? 0 : 1]);
                horizontal = !horizontal;
            }
            emit(args, horizontalFirst ? hlineto : vlineto);
            return at;
        }
        for (; at < end && !axis(at, true) && !axis(at, false) && args.size() + 2 <= maxArgs;
             ++at) {
            args.push_back(ops[at].d[0]);
            args.push_back(ops[at].d[1]);
        }
        emit(args, rlineto);
        return at;
    }

    std::size_t curves(const std::vector<PathOp>& ops, std::size_t at, std::size_t end) {
        Chain best;
        for (const bool horizontalFirst : {true, false}) {
            Chain chain = alternating(ops, at, end, horizontalFirst);
            if (chain.length > best.length) {
                best = std::move(chain);
            }
        }
        for (const bool horizontal : {true, false}) {
            Chain chain = parallel(ops, at, end, horizontal);
            if (chain.length > best.length) {
                best = std::move(chain);
            }
        }
        if (best.length == 0) {
            // Plain curves until one that a shorter operator could start.
            for (; at < end && best.args.size() + 6 <= maxArgs &&
                   (best.length == 0 || !startsChain(ops[at].d));
                 ++at, ++best.length) {
                best.args.insert(best.args.end(), ops[at].d.begin(), ops[at].d.end());
            }
            emit(best.args, rrcurveto);
            return at;
        }
        emit(best.args, best.op);
        return at + best.length;
    }

  private:
    static bool startsChain(const Curve& c) {
        return (c[dya] == 0 || c[dxa] == 0) || c[dyc] == 0 || c[dxc] == 0;
    }

    static Chain alternating(const std::vector<PathOp>& ops, std::size_t at, std::size_t end,
                             bool horizontalFirst) {
        Chain chain;
        chain.op = horizontalFirst ? hvcurveto : vhcurveto;
        bool horizontal = horizontalFirst;
        for (std::size_t i = at; i < end && chain.args.size() + 5 <= maxArgs; ++i) {
            const Curve& c = ops[i].d;
            if (horizontal ? c[dya] != 0 : c[dxa] != 0) {
                break;
            }
            chain.args.push_back(horizontal ? c[dxa] : c[dya]);
            chain.args.push_back(c[dxb]);
            chain.args.push_back(c[dyb]);
            chain.args.push_back(horizontal ? c[dyc] : c[dxc]);
            ++chain.length;
            const Fixed across = horizontal ? c[dxc] : c[dyc];
            if (across != 0) {
                chain.args.push_back(across); // only the last curve may end off the axis
                break;
            }
            horizontal = !horizontal;
        }
        return chain;
    }

    static Chain parallel(const std::vector<PathOp>& ops, std::size_t at, std::size_t end,
                          bool horizontal) {
        Chain chain;
        chain.op = horizontal ? hhcurveto : vvcurveto;
        const int along = horizontal ? 0 : 1, across = 1 - along;
        for (std::size_t i = at; i < end && chain.args.size() + 5 <= maxArgs; ++i) {
            const Curve& c = ops[i].d;
            if (c[dxc + across] != 0 || (i > at && c[dxa + across] != 0)) {
                break;
            }
            if (i == at && c[dxa + across] != 0) {
                chain.args.push_back(c[dxa + across]);
            }
            chain.args.push_back(c[dxa + along]);
            chain.args.push_back(c[dxb]);
            chain.args.push_back(c[dyb]);
            chain.args.push_back(c[dxc + along]);
            ++chain.length;
        }
        return chain;
    }
};

void appendMask(std::string& out, const HintSet& active, const std::vector<std::size_t>& order) {
    out.push_back(static_cast<char>(hintmask));
    std::string bytes((order.size() + 7) / 8, '\0');
    for (std::size_t bit = 0; bit < order.size(); ++bit) {
        if (active[order[bit]]) {
            bytes[bit / 8] = static_cast<char>(bytes[bit / 8] | (0x80 >> (bit % 8)));
        }
    }
    out += bytes;
}

} // namespace

void appendType2Number(std::string& out, Fixed value) {
    const auto put = [&](auto... bytes) { (out.push_back(static_cast<char>(bytes)), ...); };
    if (value % fixedOne != 0) {
        if (value > INT32_MAX || value < INT32_MIN) {
            throw FontProgramError("a charstring value outside the Type 2 range");
        }
        const auto bits = static_cast<std::uint32_t>(static_cast<std::int32_t>(value));
        put(255, bits >> 24, bits >> 16, bits >> 8, bits);
        return;
    }
    const Fixed n = value / fixedOne;
    if (n >= -107 && n <= 107) {
        put(n + 139);
    } else if (n >= 108 && n <= 1131) {
        put(247 + (n - 108) / 256, (n - 108) % 256);
    } else if (n >= -1131 && n <= -108) {
        put(251 + (-n - 108) / 256, (-n - 108) % 256);
    } else if (n >= -32768 && n <= 32767) {
        put(28, (n >> 8) & 0xff, n & 0xff);
    } else {
        throw FontProgramError("a charstring value outside the Type 2 range");
    }
}

std::string encodeType2(const GlyphProgram& glyph) {
    Encoder encoder;
    if (glyph.seac) {
        encoder.emit({glyph.seac->adx, glyph.seac->ady, glyph.seac->baseCode * fixedOne,
                      glyph.seac->accentCode * fixedOne},
                     endchar);
        return encoder.out;
    }
    const auto masks = std::count_if(glyph.ops.begin(), glyph.ops.end(), [](const PathOp& op) {
        return op.kind == PathOp::Kind::mask;
    });
    const bool withMasks = masks > 1;
    // Without replacement only the one set in force matters; stems replaced before the first
    // drawing never act on the outline or its hinting.
    HintSet used;
    for (const PathOp& op : glyph.ops) {
        if (op.kind == PathOp::Kind::mask) {
            used = op.hints;
            break;
        }
    }
    std::vector<Stem> hs, vs;
    std::vector<std::size_t> hIndex, vIndex;
    for (std::size_t i = 0; i < glyph.stems.size(); ++i) {
        if (withMasks || masks == 0 || used[i]) {
            (glyph.stems[i].horizontal ? hs : vs).push_back(glyph.stems[i]);
            (glyph.stems[i].horizontal ? hIndex : vIndex).push_back(i);
        }
    }
    const auto byPosition = [&](std::vector<std::size_t>& index) {
        std::stable_sort(index.begin(), index.end(), [&](std::size_t a, std::size_t b) {
            const Stem &sa = glyph.stems[a], &sb = glyph.stems[b];
            return sa.position != sb.position ? sa.position < sb.position : sa.width < sb.width;
        });
    };
    byPosition(hIndex);
    byPosition(vIndex);
    std::vector<std::size_t> order = hIndex;
    order.insert(order.end(), vIndex.begin(), vIndex.end());
    encoder.stems(hs, withMasks ? hstemhm : hstem);
    encoder.stems(vs, withMasks ? vstemhm : vstem);

    const auto& ops = glyph.ops;
    for (std::size_t at = 0; at < ops.size();) {
        const auto kind = ops[at].kind;
        std::size_t end = at;
        while (end < ops.size() && ops[end].kind == kind) {
            ++end;
        }
        if (kind == PathOp::Kind::mask) {
            if (withMasks) {
                appendMask(encoder.out, ops[end - 1].hints, order);
            }
            at = end;
        } else if (kind == PathOp::Kind::move) {
            encoder.move(ops[at++]);
        } else if (kind == PathOp::Kind::line) {
            at = encoder.lines(ops, at, end);
        } else {
            at = encoder.curves(ops, at, end);
        }
    }
    encoder.out.push_back(static_cast<char>(endchar));
    return encoder.out;
}

} // namespace quillet::fonts
