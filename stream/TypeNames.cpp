#include "stream/TypeNames.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <new>
#include <string_view>

namespace {

void ReplaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

// Starts over after each find, because what closes up behind an erased keyword may be one again.
void EraseFirstWhilePresent(std::string& text, std::string_view keyword) {
    for (std::size_t at = text.find(keyword); at != std::string::npos; at = text.find(keyword))
        text.erase(at, keyword.size());
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsWord(char c) {
    return IsDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

// No identifier begins with a digit, so a digit behind anything else begins a literal.
bool BeginsLiteral(const std::string& name, std::size_t at) {
    return IsDigit(name[at]) && (at == 0 || !IsWord(name[at - 1]));
}

// The end of a cast in front of a literal, as in "(Color)2" or "(char)-1"; @p at if there is none.
std::size_t SkipCast(const std::string& name, std::size_t at) {
    if (name[at] != '(')
        return at;
    const std::size_t close = name.find(')', at);
    if (close == std::string::npos || close + 1 == name.size())
        return at;
    const char next = name[close + 1];
    return IsDigit(next) || next == '-' ? close + 1 : at;
}

std::string BareLiterals(const std::string& name) {
    std::string bare;
    for (std::size_t at = 0; at < name.size();) {
        at = SkipCast(name, at);
        const bool literal = BeginsLiteral(name, at);
        do
            bare += name[at++];
        while (literal && at < name.size() && IsDigit(name[at]));
        if (literal)
            at = std::min(name.find_first_not_of("uUlL", at), name.size());
    }
    return bare;
}

// Template arguments of type bool are spelled as numbers.
std::string NumberBools(const std::string& name) {
    std::string numbered;
    for (std::size_t at = 0; at < name.size();) {
        if (!IsWord(name[at])) {
            numbered += name[at++];
            continue;
        }
        std::size_t end = at;
        while (end < name.size() && IsWord(name[end]))
            ++end;
        const std::string_view word(name.data() + at, end - at);
        numbered += word == "true" ? "1" : word == "false" ? "0" : word;
        at = end;
    }
    return numbered;
}

// One blank between closing brackets and in front of * and &, none behind a comma or inside brackets' ends.
std::string Respace(const std::string& name) {
    std::string spaced;
    for (const char c : name) {
        const char last = spaced.empty() ? '\0' : spaced.back();
        if (c == ' ' && (last == ',' || last == ' ' || last == '<' || last == '\0'))
            continue;
        if ((c == '>' || c == ',') && last == ' ')
            spaced.pop_back();
        const bool closesAgain = c == '>' && !spaced.empty() && spaced.back() == '>';
        const bool points = (c == '*' || c == '&') && last != ' ' && last != '(';
        if (closesAgain || points)
            spaced += ' ';
        spaced += c;
    }
    return spaced;
}

} // namespace

std::string kel::NormaliseTypeName(std::string name) {
    EraseFirstWhilePresent(name, "struct ");
    EraseFirstWhilePresent(name, "class ");
    ReplaceAll(name, "`anonymous namespace'", "(anonymous namespace)");
    ReplaceAll(name, "std::__cxx11::", "std::");
    ReplaceAll(name, "std::__1::", "std::");
    ReplaceAll(name, "long long", "__int64");
    return Respace(NumberBools(BareLiterals(name)));
}

std::string kel::PlainTypeName(const char* raw, const char* demangled, int status) {
    constexpr int kNoMemory = -1;
    if (demangled == nullptr && status == kNoMemory)
        throw std::bad_alloc();
    return demangled != nullptr ? demangled : raw;
}

std::string kel::NormalTypeName(const std::type_info& type) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> demangled(
        abi::__cxa_demangle(type.name(), /*buffer*/ nullptr, /*length*/ nullptr, &status), &std::free);
    return NormaliseTypeName(PlainTypeName(type.name(), demangled.get(), status));
}
