#include "bench/stream/Values.h"
#include "bench/support/LeanStreambuf.h"

#include <cereal/archives/binary.hpp>
#include <cereal/types/string.hpp>

#include <istream>
#include <ostream>

namespace {

using kel::bench::Values;

void Write(const Values& values, const kel::bench::Taker& take) {
    kel::bench::LeanOutput sink;
    std::ostream stream(&sink);
    cereal::BinaryOutputArchive archive(stream);
    for (std::size_t i = 0; i < kel::bench::kRounds; ++i)
        archive(values.ints[i], values.doubles[i], values.shorts[i], values.texts[i]);
    kel::bench::Finish(sink.Content(), take);
}

void Read(const std::string& block, Values& values) {
    kel::bench::LeanInput source(block);
    std::istream stream(&source);
    cereal::BinaryInputArchive archive(stream);
    for (std::size_t i = 0; i < kel::bench::kRounds; ++i)
        archive(values.ints[i], values.doubles[i], values.shorts[i], values.texts[i]);
}

const kel::bench::Enter<kel::bench::ValueStore> entered{{"cereal", &Write, &Read}};

} // namespace
