#include "engines/fonts/Subroutinizer.hpp"

#include "engines/fonts/Type2Encoder.hpp"

#include <algorithm>
#include <unordered_map>

namespace quillet::fonts {
namespace {

// Longer runs are rare and make the candidate table grow with their square.
constexpr std::size_t maxRunUnits = 24;
constexpr std::size_t maxSubrs = 30000;

struct Unit {
    std::size_t start = 0, end = 0;
    bool movable = false;
};

bool isPathOperator(int op) {
    return op == 4 || op == 5 || op == 6 || op == 7 || op == 8 || op == 21 || op == 22 ||
           op == 24 || op == 25 || op == 26 || op == 27 || op == 30 || op == 31;
}

// Each operator with its operands; hintmask with its mask bytes.
std::vector<Unit> units(const std::string& charstring) {
    std::vector<Unit> list;
    std::size_t start = 0, args = 0, stems = 0;
    for (std::size_t at = 0; at < charstring.size();) {
        const auto byte = static_cast<std::uint8_t>(charstring[at]);
        if (byte >= 32 || byte == 28) {
            at += byte == 28 ? 3 : byte == 255 ? 5 : byte >= 247 ? 2 : 1;
            ++args;
            continue;
        }
        ++at;
        if (byte == 1 || byte == 3 || byte == 18 || byte == 23) {
            stems += args / 2;
        } else if (byte == 19 || byte == 20) {
            stems += args / 2;
            at += (stems + 7) / 8;
        }
        list.push_back(
            Unit{start, std::min(at, charstring.size()), !list.empty() && isPathOperator(byte)});
        start = at;
        args = 0;
    }
    return list;
}

} // namespace

int subrBias(std::size_t count) {
    return count < 1240 ? 107 : count < 33900 ? 1131 : 32768;
}

Subroutinized subroutinize(const std::vector<std::string>& charstrings) {
    struct Occurrence {
        std::size_t glyph, first, end; // units [first, end)
    };
    std::vector<std::vector<Unit>> split;
    std::unordered_map<std::string, std::vector<Occurrence>> runs;
    for (std::size_t g = 0; g < charstrings.size(); ++g) {
        split.push_back(units(charstrings[g]));
        const auto& list = split.back();
        for (std::size_t i = 0; i < list.size(); ++i) {
            for (std::size_t j = i; j < list.size() && j - i < maxRunUnits && list[j].movable;
                 ++j) {
                if (j > i) {
                    runs[charstrings[g].substr(list[i].start, list[j].end - list[i].start)]
                        .push_back(Occurrence{g, i, j + 1});
                }
            }
        }
    }
    // A call costs up to three bytes, a subroutine its body, return and an offset.
    const auto saving = [](std::size_t size, std::size_t uses) {
        return std::int64_t(size * uses) - std::int64_t(size + 3 + 3 * uses);
    };
    std::vector<std::pair<const std::string*, const std::vector<Occurrence>*>> candidates;
    for (const auto& [run, occurrences] : runs) {
        if (occurrences.size() > 1 && saving(run.size(), occurrences.size()) > 0) {
            candidates.emplace_back(&run, &occurrences);
        }
    }
    std::sort(candidates.begin(), candidates.end(), [&](const auto& a, const auto& b) {
        return saving(a.first->size(), a.second->size()) >
               saving(b.first->size(), b.second->size());
    });

    // Best candidates first, each taking the occurrences no earlier one took.
    std::vector<std::vector<std::size_t>> claimed(charstrings.size()),
        runLength(charstrings.size());
    for (std::size_t g = 0; g < charstrings.size(); ++g) {
        claimed[g].assign(split[g].size(), 0);
        runLength[g].assign(split[g].size(), 0);
    }
    std::vector<std::pair<std::string, std::size_t>> subrs; // body, uses
    for (const auto& [run, occurrences] : candidates) {
        if (subrs.size() == maxSubrs) {
            break;
        }
        std::vector<Occurrence> free;
        for (const Occurrence& o : *occurrences) {
            const auto& taken = claimed[o.glyph];
            // A glyph's occurrences come in order, so only the last one taken can overlap.
            const bool overlapsFree =
                !free.empty() && free.back().glyph == o.glyph && o.first < free.back().end;
            if (!overlapsFree && std::all_of(taken.begin() + std::ptrdiff_t(o.first),
                                             taken.begin() + std::ptrdiff_t(o.end),
                                             [](std::size_t c) { return c == 0; })) {
                free.push_back(o);
            }
        }
        if (free.size() < 2 || saving(run->size(), free.size()) <= 0) {
            continue;
        }
        subrs.emplace_back(*run, free.size());
        for (const Occurrence& o : free) {
            std::fill(claimed[o.glyph].begin() + std::ptrdiff_t(o.first),
                      claimed[o.glyph].begin() + std::ptrdiff_t(o.end), subrs.size());
            runLength[o.glyph][o.first] = o.end - o.first;
        }
    }

    // The most used subroutines get the shortest numbers.
    std::vector<std::size_t> order(subrs.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        order[i] = i;
    }
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return subrs[a].second > subrs[b].second;
    });
    std::vector<std::size_t> number(subrs.size());
    Subroutinized result;
    for (std::size_t i = 0; i < order.size(); ++i) {
        number[order[i]] = i;
        result.subrs.push_back(subrs[order[i]].first + '\x0b');
    }
    const int bias = subrBias(subrs.size());
    for (std::size_t g = 0; g < charstrings.size(); ++g) {
        std::string out;
        const auto& list = split[g];
        std::size_t covered = 0;
        for (std::size_t i = 0; i < list.size(); ++i) {
            if (i < covered) {
                continue;
            }
            if (runLength[g][i] != 0) {
                appendType2Number(out, Fixed(int(number[claimed[g][i] - 1]) - bias) * fixedOne);
                out.push_back('\x0a');
                covered = i + runLength[g][i];
            } else {
                out.append(charstrings[g], list[i].start, list[i].end - list[i].start);
            }
        }
        if (!list.empty()) {
            out.append(charstrings[g], list.back().end, std::string::npos);
        } else {
            out = charstrings[g];
        }
        result.charstrings.push_back(std::move(out));
    }
    return result;
}

} // namespace quillet::fonts
