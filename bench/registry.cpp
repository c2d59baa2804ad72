#include "bench/registry/Stores.h"
#include "bench/support/Areas.h"
#include "bench/support/Random.h"

#include <kelcore/registry.h>
#include <kelcore/text.h>

#include <fnmatch.h>

#include <cstdlib>
#include <stdexcept>

namespace kel::bench {
namespace {

// One hive for all keys of the program, away from the user's own.
RegistryKey NewKey() {
    static int count = 0;
    if (count++ == 0)
        setenv("KELCORE_REGISTRY", (NewFolder("kelcore") / "registry.db").c_str(), /*overwrite*/ 1);
    return RegistryKey(HKEY_CURRENT_USER)
        .CreateSubkey(StdA2W("bench\\store " + std::to_string(count)), 0, KEY_ALL_ACCESS, nullptr);
}

class KeyStore {
public:
    using Text = WideString;
    static Text FromBytes(const std::string& bytes) { return StdA2W(bytes); }
    static std::string Bytes(const Text& text) { return StdW2A(text); }

    void Fill(const std::vector<std::pair<Text, Text>>& pairs) {
        for (const auto& [name, text] : pairs)
            Set(name, text);
    }

    void Set(const Text& name, const Text& text) {
        if (m_key.SetString(name, text) != ERROR_SUCCESS)
            throw std::runtime_error("a value cannot be set");
    }

    Text Get(const Text& name) {
        Text text;
        m_key.GetString(name, text);
        return text;
    }

    // GetAllStrings gives names and texts apart.
    struct Lists {
        std::vector<Text> names, texts;
    };

    Lists AllApart() {
        Lists lists;
        m_key.GetAllStrings(lists.names, lists.texts);
        return lists;
    }

    std::vector<std::pair<Text, Text>> All() {
        const Lists lists = AllApart();
        std::vector<std::pair<Text, Text>> pairs;
        for (std::size_t i = 0; i != lists.names.size(); ++i)
            pairs.emplace_back(lists.names[i], lists.texts[i]);
        return pairs;
    }

private:
    RegistryKey m_key = NewKey();
};

Call ListKey() {
    const auto store = NewStore<KeyStore>(kMany);
    Call call = ListJob<KeyStore>();
    call.run = [store] { benchmark::DoNotOptimize(store->AllApart()); };
    return call;
}

const Enter<StoreJobs> entered{{"kelcore", WriteJob<KeyStore>, ReadJob<KeyStore>, ListKey}};

// Patterns that the two matchers understand alike: '*' stands at the end, and no name ends where it begins.
constexpr const char* kPatterns[] = {"tmp*", "v????e 1*", "value 77??", "*", "value 1234", "x*"};

std::vector<std::string> MatchedNames() {
    std::vector<std::string> names;
    for (const Entry& entry : Entries(kMany))
        names.push_back(entry.name);
    return names;
}

template <class Text, class Convert, class Match>
Call MatchJob(Convert convert, Match match) {
    std::vector<Text> names, patterns;
    for (const std::string& name : MatchedNames())
        names.push_back(convert(name));
    for (const char* pattern : kPatterns)
        patterns.push_back(convert(pattern));
    const auto count = [names = std::move(names), patterns = std::move(patterns), match] {
        std::size_t matched = 0;
        for (const Text& pattern : patterns) {
            for (const Text& name : names)
                matched += match(name, pattern);
        }
        return matched;
    };
    const auto shared = std::make_shared<decltype(count)>(count);
    return {[shared] { benchmark::DoNotOptimize((*shared)()); }, [shared] { return std::to_string((*shared)()); }};
}

Call MatchNames() {
    return MatchJob<WideString>(StdA2W, RegistryKey::NameMatch);
}

Call MatchNamesPlain() {
    const auto match = [](const std::string& name, const std::string& pattern) {
        return fnmatch(pattern.c_str(), name.c_str(), /*flags*/ 0) == 0;
    };
    return MatchJob<std::string>([](const std::string& text) { return text; }, match);
}

} // namespace

std::vector<Entry> Entries(std::size_t count, int round) {
    Random random(11);
    std::vector<Entry> entries;
    for (std::size_t i = 0; i != count; ++i)
        entries.push_back(
            {"value " + std::to_string(i), std::to_string(round) + random.Letters(10 + random.Below(50))});
    return entries;
}

std::filesystem::path NewFolder(const std::string& who) {
    // Removes what the stores have made when the program ends; they keep their files open until then.
    static const struct Root {
        std::filesystem::path path;
        Root() {
            std::string pattern = (std::filesystem::temp_directory_path() / "kelbench-XXXXXX").string();
            if (mkdtemp(pattern.data()) == nullptr)
                throw std::runtime_error("no folder for the stores");
            path = pattern;
        }
        ~Root() {
            std::error_code ignored;
            std::filesystem::remove_all(path, ignored);
        }
    } root;
    static int count = 0;
    const std::filesystem::path folder = root.path / (who + std::to_string(++count));
    std::filesystem::create_directory(folder);
    return folder;
}

void AddRegistryJobs() {
    for (const StoreJobs& store : Contenders<StoreJobs>()) {
        if (store.write)
            AddJob("registry", store.who, "write 100 values", store.write);
        if (store.read)
            AddJob("registry", store.who, "read 1000 values", store.read);
        if (store.list)
            AddJob("registry", store.who, "list 10k values", store.list);
    }
    AddJob("registry", "kelcore", "match 10k names", MatchNames);
    AddJob("registry", "fnmatch", "match 10k names", MatchNamesPlain);
}

} // namespace kel::bench
