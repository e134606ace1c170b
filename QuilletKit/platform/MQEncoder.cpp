#include "platform/MQEncoder.hpp"

#include <algorithm>
#include <bit>

namespace quillet {

namespace detail {
namespace {

struct QeRow {
    std::uint16_t qe;
    std::uint8_t nmps;
    std::uint8_t nlps;
    bool switchMPS;
};

// T.88 Table E.1.
constexpr std::array<QeRow, 47> qeTable{{
    {0x5601, 1, 1, true},    {0x3401, 2, 6, false},   {0x1801, 3, 9, false},
    {0x0AC1, 4, 12, false},  {0x0521, 5, 29, false},  {0x0221, 38, 33, false},
    {0x5601, 7, 6, true},    {0x5401, 8, 14, false},  {0x4801, 9, 14, false},
    {0x3801, 10, 14, false}, {0x3001, 11, 17, false}, {0x2401, 12, 18, false},
    {0x1C01, 13, 20, false}, {0x1601, 29, 21, false}, {0x5601, 15, 14, true},
    {0x5401, 16, 14, false}, {0x5101, 17, 15, false}, {0x4801, 18, 16, false},
    {0x3801, 19, 17, false}, {0x3401, 20, 18, false}, {0x3001, 21, 19, false},
    {0x2801, 22, 19, false}, {0x2401, 23, 20, false}, {0x2201, 24, 21, false},
    {0x1C01, 25, 22, false}, {0x1801, 26, 23, false}, {0x1601, 27, 24, false},
    {0x1401, 28, 25, false}, {0x1201, 29, 26, false}, {0x1101, 30, 27, false},
    {0x0AC1, 31, 28, false}, {0x09C1, 32, 29, false}, {0x08A1, 33, 30, false},
    {0x0521, 34, 31, false}, {0x0441, 35, 32, false}, {0x02A1, 36, 33, false},
    {0x0221, 37, 34, false}, {0x0141, 38, 35, false}, {0x0111, 39, 36, false},
    {0x0085, 40, 37, false}, {0x0049, 41, 38, false}, {0x0025, 42, 39, false},
    {0x0015, 43, 40, false}, {0x0009, 44, 41, false}, {0x0005, 45, 42, false},
    {0x0001, 45, 43, false}, {0x5601, 46, 46, false},
}};

constexpr std::array<MQTransition, 128> makeTransitions() {
    std::array<MQTransition, 128> transitions{};
    for (std::uint8_t mps = 0; mps < 2; ++mps) {
        for (std::uint8_t index = 0; index < qeTable.size(); ++index) {
            const QeRow& row = qeTable[index];
            const auto lpsMPS = static_cast<std::uint8_t>(row.switchMPS ? 1 - mps : mps);
            transitions[mps << 6 | index] = {row.qe, static_cast<std::uint8_t>(mps << 6 | row.nmps),
                                             static_cast<std::uint8_t>(lpsMPS << 6 | row.nlps)};
        }
    }
    return transitions;
}

} // namespace

constinit const std::array<MQTransition, 128> mqTransitions = makeTransitions();

} // namespace detail

// The byte before the first is B at BP = BPST - 1 in INITENC: a 0 that only BYTEOUT's carry test
// reads (no carry can reach it: C stays below 2^27 until the first byte goes out) and that
// finish() drops.
MQEncoder::MQEncoder(std::size_t contexts) : states_(contexts, 0), out_(1, 0) {
}

// RENORME, a run of shifts at a time instead of one: a byte goes out exactly when CT reaches 0.
void MQEncoder::renormalize() {
    int shifts = std::countl_zero(static_cast<std::uint16_t>(a_));
    while (shifts > 0) {
        const int step = std::min(shifts, ct_);
        a_ <<= step;
        c_ <<= step;
        ct_ -= step;
        shifts -= step;
        if (ct_ == 0) {
            byteOut();
        }
    }
}

void MQEncoder::byteOut() {
    if (out_.back() != 0xFF && c_ >= 0x8000000) {
        ++out_.back(); // the carry; a byte that becomes 0xFF gets the stuffed bit below
        c_ &= 0x7FFFFFF;
    }
    if (out_.back() == 0xFF) {
        out_.push_back(static_cast<std::uint8_t>(c_ >> 20));
        c_ &= 0xFFFFF;
        ct_ = 7;
    } else {
        out_.push_back(static_cast<std::uint8_t>(c_ >> 19));
        c_ &= 0x7FFFF;
        ct_ = 8;
    }
}

std::vector<std::uint8_t> MQEncoder::finish() {
    // SETBITS: as many 1 bits as the interval allows, the fewest bytes to pin it down.
    const std::uint32_t top = c_ + a_;
    c_ |= 0xFFFF;
    if (c_ >= top) {
        c_ -= 0x8000;
    }
    c_ <<= ct_;
    byteOut();
    c_ <<= ct_;
    byteOut();
    if (out_.back() != 0xFF) {
        out_.push_back(0xFF);
    }
    out_.push_back(0xAC);
    out_.erase(out_.begin());
    return std::move(out_);
}

} // namespace quillet
