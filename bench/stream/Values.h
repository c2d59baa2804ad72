#pragma once

#include "bench/support/Jobs.h"

#include <string>
#include <string_view>
#include <vector>

namespace kel::bench {

constexpr std::size_t kRounds = 250'000;

/// A million values: an int, a double, a short and a text of 12 characters in turn.
struct Values {
    std::vector<int> ints = std::vector<int>(kRounds);
    std::vector<double> doubles = std::vector<double>(kRounds);
    std::vector<short> shorts = std::vector<short>(kRounds);
    std::vector<std::string> texts = std::vector<std::string>(kRounds);
};

/// The values that all write.
const Values& GivenValues();

/// Takes what has been written, as it lies in the writer's own memory; empty when nobody wants it.
using Taker = std::function<void(std::string_view content)>;

/// Ends a write: the content is complete, whoever takes it.
inline void Finish(std::string_view content, const Taker& take) {
    benchmark::DoNotOptimize(content);
    if (take)
        take(content);
}

/// One who writes the values into memory that starts empty, and reads them back into values that have their size.
struct ValueStore {
    const char* who;
    void (*write)(const Values& values, const Taker& take);
    void (*read)(const std::string& block, Values& values);
};

} // namespace kel::bench
