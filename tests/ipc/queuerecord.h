// SPDX-License-Identifier: MIT
#pragma once

// The record that the queue tests and their peer exchange: source and sequence number lead it,
// the sequence number ends it, and one byte made of both fills the rest, so a torn or misplaced
// record shows.

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace QueueRecord {

inline char fillByte(std::int32_t source, std::int32_t seq)
{
    return static_cast<char>(source * 31 + seq * 7 + 1);
}

inline void fill(char *data, int size, std::int32_t source, std::int32_t seq)
{
    std::memset(data, fillByte(source, seq), size_t(std::max(size, 0)));
    if (size >= 12) {
        std::memcpy(data, &source, 4);
        std::memcpy(data + 4, &seq, 4);
        std::memcpy(data + size - 4, &seq, 4);
    }
}

/// True when the record is whole; its source and sequence number come back.
inline bool check(const char *data, int size, std::int32_t &source, std::int32_t &seq)
{
    std::int32_t tail = -1;
    if (size < 12)
        return false;
    std::memcpy(&source, data, 4);
    std::memcpy(&seq, data + 4, 4);
    std::memcpy(&tail, data + size - 4, 4);
    const char byte = fillByte(source, seq);
    return tail == seq && std::all_of(data + 8, data + size - 4, [=](char c) { return c == byte; });
}

} // namespace QueueRecord
