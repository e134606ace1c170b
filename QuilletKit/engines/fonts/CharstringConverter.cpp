#include "engines/fonts/CharstringConverter.hpp"

#include "engines/fonts/CFFStandardStrings.hpp"
#include "engines/fonts/FontProgramError.hpp"

#include <algorithm>
#include <cstdlib>

namespace quillet::fonts {
namespace {

constexpr std::size_t maxType1Stack = 24;
constexpr int maxSubrDepth = 10;
constexpr int maxOperations = 65536;
constexpr std::size_t maxCharstringBytes = 65535;
// Type 1 integers reach 2^31; anything far beyond, as fixed point, came from a runaway div.
constexpr Fixed maxMagnitude = Fixed(1) << 47;

struct Point {
    Fixed x = 0, y = 0;
};

Fixed fixedDivide(Fixed a, Fixed b) {
    if (b == 0) {
        throw FontProgramError("division by zero in a charstring");
    }
    // Rounded to nearest, halves away from zero, as interpreters divide 16.16 values.
    const bool negative = (a < 0) != (b < 0);
    const Fixed ua = std::llabs(a), ub = std::llabs(b);
    const Fixed q = (ua / ub) * fixedOne + ((ua % ub) * fixedOne + ub / 2) / ub;
    if (q > maxMagnitude) {
        throw FontProgramError("a div result out of range");
    }
    return negative ? -q : q;
}

class Interpreter {
  public:
    Interpreter(const Type1Font& font,
                const std::map<std::string, const std::string*, std::less<>>& byName)
        : font_(font), byName_(byName) {}

    GlyphProgram program;
    Fixed width = 0;
    std::vector<std::string> components;

    void runGlyph(const std::string& charstring) {
        run(charstring, 0);
        if (hintsOverflow_ || componentMode_) {
            dropHints();
        }
    }

  private:
    void run(std::string_view code, int depth) {
        if (depth > maxSubrDepth) {
            throw FontProgramError("subroutines nested too deeply");
        }
        for (std::size_t at = 0; at < code.size() && !ended_;) {
            const auto byte = static_cast<std::uint8_t>(code[at++]);
            if (++operations_ > maxOperations) {
                throw FontProgramError("a charstring runs too long");
            }
            if (byte >= 32) {
                push(readNumber(code, byte, at));
                continue;
            }
            int op = byte;
            if (op == 12) {
                if (at >= code.size()) {
                    throw FontProgramError("a charstring ends inside an operator");
                }
                op = 1200 + static_cast<std::uint8_t>(code[at++]);
            }
            if (op == 10) {
                callSubr(depth);
            } else if (op == 11) {
                return;
            } else {
                execute(op);
            }
        }
    }

    static Fixed readNumber(std::string_view code, std::uint8_t byte, std::size_t& at) {
        const auto next = [&] {
            if (at >= code.size()) {
                throw FontProgramError("a charstring ends inside a number");
            }
            return static_cast<std::uint8_t>(code[at++]);
        };
        if (byte <= 246) {
            return Fixed(byte - 139) * fixedOne;
        }
        if (byte <= 250) {
            return Fixed((byte - 247) * 256 + next() + 108) * fixedOne;
        }
        if (byte <= 254) {
            return Fixed(-(byte - 251) * 256 - next() - 108) * fixedOne;
        }
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) {
            value = (value << 8) | next();
        }
        return Fixed(static_cast<std::int32_t>(value)) * fixedOne;
    }

    void push(Fixed value) {
        if (stack_.size() >= maxType1Stack) {
            throw FontProgramError("charstring operand stack overflow");
        }
        stack_.push_back(value);
    }

    Fixed pop() {
        if (stack_.empty()) {
            throw FontProgramError("charstring operand stack underflow");
        }
        const Fixed value = stack_.back();
        stack_.pop_back();
        return value;
    }

    // Operators read their operands from the bottom of the stack, as Type 1 defines them.
    Fixed arg(std::size_t index, std::size_t needed) const {
        if (stack_.size() < needed) {
            throw FontProgramError("too few operands for a charstring operator");
        }
        return stack_[index];
    }

    static int integer(Fixed value) {
        if (value % fixedOne != 0 || std::llabs(value) > maxMagnitude) {
            throw FontProgramError("a charstring uses a fraction where a number is expected");
        }
        return static_cast<int>(value / fixedOne);
    }

    void callSubr(int depth) {
        const int index = integer(pop());
        if (index < 0 || static_cast<std::size_t>(index) >= font_.subrs.size() ||
            font_.subrs[static_cast<std::size_t>(index)].empty()) {
            throw FontProgramError("a call to a missing subroutine");
        }
        run(font_.subrs[static_cast<std::size_t>(index)], depth + 1);
    }

    void execute(int op);
    void callOtherSubr();
    void seac();

    void addStem(bool horizontal, Fixed position, Fixed size) {
        if (componentMode_) {
            return;
        }
        const Stem stem{horizontal, position + (horizontal ? sb_.y : sb_.x), size};
        auto found = std::find(program.stems.begin(), program.stems.end(), stem);
        if (found == program.stems.end()) {
            if (program.stems.size() == maxStems) {
                hintsOverflow_ = true;
                return;
            }
            found = program.stems.insert(program.stems.end(), stem);
        }
        if (replacing_) {
            active_.reset();
            replacing_ = false;
        }
        active_.set(static_cast<std::size_t>(found - program.stems.begin()));
    }

    void segment(PathOp::Kind kind, const std::array<Fixed, 6>& d, Point start) {
        if (replacing_) {
            active_.reset();
            replacing_ = false;
        }
        if (!masked_ || active_ != lastMask_) {
            program.ops.push_back(PathOp{PathOp::Kind::mask, {}, active_});
            lastMask_ = active_;
            masked_ = true;
        }
        if (!open_) {
            program.ops.push_back(
                PathOp{PathOp::Kind::move, {start.x - pen_.x, start.y - pen_.y}, {}});
            pen_ = start;
            open_ = true;
        }
        program.ops.push_back(PathOp{kind, d, {}});
        const int count = kind == PathOp::Kind::line ? 1 : 3;
        for (int i = 0; i < count; ++i) {
            pen_.x += d[2 * i];
            pen_.y += d[2 * i + 1];
        }
        current_ = pen_;
    }

    void line(Fixed dx, Fixed dy) { segment(PathOp::Kind::line, {dx, dy}, current_); }
    void curve(Fixed a, Fixed b, Fixed c, Fixed d, Fixed e, Fixed f) {
        segment(PathOp::Kind::curve, {a, b, c, d, e, f}, current_);
    }
    void moveBy(Fixed dx, Fixed dy) {
        current_.x += dx;
        current_.y += dy;
        if (!flexActive_) {
            open_ = false;
        }
    }

    void dropHints() {
        program.stems.clear();
        std::erase_if(program.ops, [](const PathOp& op) { return op.kind == PathOp::Kind::mask; });
    }

    const Type1Font& font_;
    const std::map<std::string, const std::string*, std::less<>>& byName_;
    std::vector<Fixed> stack_;
    std::vector<Fixed> results_; // what `pop` takes back after callothersubr; back() first
    Point current_, pen_, sb_, origin_, flexStart_;
    std::vector<Point> flex_;
    HintSet active_, lastMask_;
    int operations_ = 0;
    bool ended_ = false, open_ = false, flexActive_ = false, replacing_ = false;
    bool masked_ = false, hintsOverflow_ = false, componentMode_ = false;
};

void Interpreter::execute(int op) {
    const auto a = [&](std::size_t index, std::size_t needed) { return arg(index, needed); };
    switch (op) {
    case 1: addStem(true, a(0, 2), a(1, 2)); break;
    case 3: addStem(false, a(0, 2), a(1, 2)); break;
    case 1201: // vstem3
    case 1202: // hstem3
        for (std::size_t i = 0; i < 6; i += 2) {
            addStem(op == 1202, a(i, 6), a(i + 1, 6));
        }
        break;
    case 4: moveBy(0, a(0, 1)); break;
    case 21: moveBy(a(0, 2), a(1, 2)); break;
    case 22: moveBy(a(0, 1), 0); break;
    case 5: line(a(0, 2), a(1, 2)); break;
    case 6: line(a(0, 1), 0); break;
    case 7: line(0, a(0, 1)); break;
    case 8: curve(a(0, 6), a(1, 6), a(2, 6), a(3, 6), a(4, 6), a(5, 6)); break;
    case 30: curve(0, a(0, 4), a(1, 4), a(2, 4), a(3, 4), 0); break;
    case 31: curve(a(0, 4), 0, a(1, 4), a(2, 4), 0, a(3, 4)); break;
    case 9: open_ = false; break;
    case 13:     // hsbw
    case 1207: { // sbw
        const bool full = op == 1207;
        const Point sb{a(0, full ? 4 : 2), full ? a(1, 4) : 0};
        current_ = {origin_.x + sb.x, origin_.y + sb.y};
        if (!componentMode_) {
            sb_ = sb;
            width = a(full ? 2 : 1, full ? 4 : 2);
        }
        break;
    }
    case 14: ended_ = true; break;
    case 1200: break; // dotsection: Type 2 has no counterpart and renderers ignore it
    case 1206: seac(); return;
    case 1212: {
        const Fixed divisor = pop();
        push(fixedDivide(pop(), divisor));
        return;
    }
    case 1216: callOtherSubr(); return;
    case 1217:
        if (results_.empty()) {
            throw FontProgramError("pop without a value from callothersubr");
        }
        push(results_.back());
        results_.pop_back();
        return;
    case 1233: current_ = {a(0, 2), a(1, 2)}; break;
    default: throw FontProgramError("an unknown charstring operator");
    }
    stack_.clear();
}

void Interpreter::callOtherSubr() {
    const int index = integer(pop());
    const int count = integer(pop());
    if (count < 0 || static_cast<std::size_t>(count) > stack_.size()) {
        throw FontProgramError("callothersubr with more arguments than the stack holds");
    }
    std::vector<Fixed> args(stack_.end() - count, stack_.end());
    stack_.resize(stack_.size() - static_cast<std::size_t>(count));
    switch (index) {
    case 0: // end of flex: the seven recorded points make two curves
        if (!flexActive_ || flex_.size() != 7 || count != 3) {
            throw FontProgramError("a flex without its seven points");
        }
        flexActive_ = false;
        current_ = flexStart_;
        for (std::size_t i = 1; i < 7; i += 3) {
            const Point p0 = i == 1 ? flexStart_ : flex_[i - 1];
            curve(flex_[i].x - p0.x, flex_[i].y - p0.y, flex_[i + 1].x - flex_[i].x,
                  flex_[i + 1].y - flex_[i].y, flex_[i + 2].x - flex_[i + 1].x,
                  flex_[i + 2].y - flex_[i + 1].y);
        }
        results_ = {args[2], args[1]};
        return;
    case 1:
        flexActive_ = true;
        flexStart_ = current_;
        flex_.clear();
        return;
    case 2:
        if (!flexActive_ || flex_.size() == 7) {
            throw FontProgramError("a flex point outside a flex");
        }
        flex_.push_back(current_);
        return;
    case 3: replacing_ = true; break;
    default: break;
    }
    // Other othersubrs hand their arguments back, which is what `pop` then collects.
    results_.assign(args.rbegin(), args.rend());
}

void Interpreter::seac() {
    const Fixed asb = arg(0, 5), adx = arg(1, 5), ady = arg(2, 5);
    const int baseCode = integer(arg(3, 5)), accentCode = integer(arg(4, 5));
    stack_.clear();
    ended_ = true;
    if (componentMode_) {
        throw FontProgramError("seac inside an accented character's component");
    }
    const auto baseName = standardEncodingName(baseCode);
    const auto accentName = standardEncodingName(accentCode);
    const auto base = baseName ? byName_.find(*baseName) : byName_.end();
    const auto accent = accentName ? byName_.find(*accentName) : byName_.end();
    if (base == byName_.end() || accent == byName_.end()) {
        throw FontProgramError("seac names a component the font lacks");
    }
    // The accent's origin lies at adx - asb from the composite's sidebearing point.
    const Point accentOrigin{adx + sb_.x - asb, ady};
    if (program.ops.empty() ||
        std::all_of(program.ops.begin(), program.ops.end(),
                    [](const PathOp& op) { return op.kind == PathOp::Kind::mask; })) {
        program.ops.clear();
        program.stems.clear();
        program.seac = Seac{accentOrigin.x, accentOrigin.y, baseCode, accentCode};
        components = {std::string(*baseName), std::string(*accentName)};
        return;
    }
    componentMode_ = true;
    for (const auto& [component, origin] :
         {std::pair{base, Point{}}, std::pair{accent, accentOrigin}}) {
        origin_ = origin;
        ended_ = false;
        open_ = false;
        stack_.clear();
        run(*component->second, 0);
    }
    ended_ = true;
}

} // namespace

CharstringConverter::CharstringConverter(const Type1Font& font) : font_(font) {
    for (const auto& [name, charstring] : font.charStrings) {
        byName_[name] = &charstring; // a later definition replaces an earlier one, as in PostScript
    }
}

Type2Glyph CharstringConverter::convert(std::string_view glyphName) const {
    const auto found = byName_.find(glyphName);
    if (found == byName_.end()) {
        throw FontProgramError("no charstring named " + std::string(glyphName));
    }
    Interpreter interpreter(font_, byName_);
    interpreter.runGlyph(*found->second);
    Type2Glyph glyph{interpreter.width, encodeType2(interpreter.program),
                     std::move(interpreter.components)};
    if (glyph.body.size() > maxCharstringBytes) {
        throw FontProgramError("a converted charstring is too large");
    }
    return glyph;
}

} // namespace quillet::fonts
