#include "bench/stream/Values.h"
#include "bench/support/LeanStreambuf.h"

#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#include <boost/serialization/string.hpp>

namespace {

using kel::bench::Values;

void Write(const Values& values, const kel::bench::Taker& take) {
    kel::bench::LeanOutput sink;
    boost::archive::binary_oarchive archive(sink, boost::archive::no_header);
    for (std::size_t i = 0; i < kel::bench::kRounds; ++i)
        archive << values.ints[i] << values.doubles[i] << values.shorts[i] << values.texts[i];
    kel::bench::Finish(sink.Content(), take);
}

void Read(const std::string& block, Values& values) {
    kel::bench::LeanInput source(block);
    boost::archive::binary_iarchive archive(source, boost::archive::no_header);
    for (std::size_t i = 0; i < kel::bench::kRounds; ++i)
        archive >> values.ints[i] >> values.doubles[i] >> values.shorts[i] >> values.texts[i];
}

const kel::bench::Enter<kel::bench::ValueStore> entered{{"boost", &Write, &Read}};

} // namespace
