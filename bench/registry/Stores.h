#pragma once

#include "bench/support/Jobs.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace kel::bench {

/// A value's name and text, ASCII.
struct Entry {
    std::string name;
    std::string text;
};

/// The first @p count of the entries, with the texts of @p round: all the same but for their first letters.
std::vector<Entry> Entries(std::size_t count, int round = 0);

/// An empty folder of its own for a store, removed with the program.
std::filesystem::path NewFolder(const std::string& who);

/// One who keeps names with texts in a file. Jobs that a store cannot do are empty.
struct StoreJobs {
    const char* who;
    std::function<Call()> write;
    std::function<Call()> read;
    std::function<Call()> list;
};

constexpr std::size_t kFew = 1000;
constexpr std::size_t kWritten = 100;
constexpr std::size_t kMany = 10000;

template <class Store>
using TextOf = typename Store::Text;

template <class Store>
using Pairs = std::vector<std::pair<TextOf<Store>, TextOf<Store>>>;

template <class Store>
Pairs<Store> PairsOf(const std::vector<Entry>& entries) {
    Pairs<Store> pairs;
    for (const Entry& entry : entries)
        pairs.emplace_back(Store::FromBytes(entry.name), Store::FromBytes(entry.text));
    return pairs;
}

template <class Store>
std::shared_ptr<Store> NewStore(std::size_t count) {
    auto store = std::make_shared<Store>();
    store->Fill(PairsOf<Store>(Entries(count)));
    return store;
}

template <class Store>
std::string ReadAll(Store& store, const Pairs<Store>& pairs) {
    std::string all;
    for (const auto& pair : pairs)
        (all += Store::Bytes(store.Get(pair.first))) += '\n';
    return all;
}

/// Sets the texts of 100 values of 1,000, each kept before the next.
template <class Store>
Call WriteJob() {
    const auto store = NewStore<Store>(kFew);
    const auto rounds = std::make_shared<std::pair<Pairs<Store>, Pairs<Store>>>(PairsOf<Store>(Entries(kWritten, 1)),
                                                                                PairsOf<Store>(Entries(kWritten, 2)));
    const auto run = [=, odd = false]() mutable {
        odd = !odd;
        for (const auto& pair : odd ? rounds->first : rounds->second)
            store->Set(pair.first, pair.second);
    };
    const auto result = [=] {
        for (const auto& pair : rounds->first)
            store->Set(pair.first, pair.second);
        return ReadAll(*store, rounds->first);
    };
    return {run, result};
}

/// Looks 1,000 values up one by one.
template <class Store>
Call ReadJob() {
    const auto store = NewStore<Store>(kFew);
    const auto pairs = std::make_shared<Pairs<Store>>(PairsOf<Store>(Entries(kFew)));
    const auto run = [=] {
        for (const auto& pair : *pairs)
            benchmark::DoNotOptimize(store->Get(pair.first));
    };
    return {run, [=] { return ReadAll(*store, *pairs); }};
}

/// Gets all of 10,000 values at once.
template <class Store>
Call ListJob() {
    const auto store = NewStore<Store>(kMany);
    const auto result = [=] {
        std::vector<std::string> lines;
        for (const auto& pair : store->All())
            lines.push_back(Store::Bytes(pair.first) + '=' + Store::Bytes(pair.second) + '\n');
        std::sort(lines.begin(), lines.end());
        std::string all;
        for (const std::string& line : lines)
            all += line;
        return all;
    };
    return {[=] { benchmark::DoNotOptimize(store->All()); }, result};
}

/// All jobs of a class with the members Text, FromBytes, Bytes, Fill, Set, Get and All.
template <class Store>
StoreJobs JobsOf(const char* who) {
    return {who, WriteJob<Store>, ReadJob<Store>, ListJob<Store>};
}

/// For stores whose texts are standard strings.
struct ByteTexts {
    using Text = std::string;
    static Text FromBytes(const std::string& bytes) { return bytes; }
    static const std::string& Bytes(const Text& text) { return text; }
};

} // namespace kel::bench
