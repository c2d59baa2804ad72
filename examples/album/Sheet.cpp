#include "Cards.h"
#include "Commands.h"
#include "Names.h"
#include "Page.h"
#include "PngFile.h"

#include <kelcore/file.h>
#include <kelcore/text.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <map>

namespace kelalbum {
namespace {

struct Mode {
    const char* name;
    IBitmap::BM_Mode mode;
};

const Mode kModes[] = {{"fit", IBitmap::BM_Fit},
                       {"fill", IBitmap::BM_Fill},
                       {"center", IBitmap::BM_Center},
                       {"stretch", IBitmap::BM_Stretch},
                       {"tile", IBitmap::BM_Tile}};

const Mode& FindMode(const std::string& name) {
    const auto* const found =
        std::find_if(std::begin(kModes), std::end(kModes), [&](const Mode& known) { return known.name == name; });
    if (found == std::end(kModes))
        throw Misuse{"there is no mode " + name + "; modes: fit fill center stretch tile"};
    return *found;
}

struct Cards {
    std::vector<Card> all;
    std::map<int, std::size_t> firsts; ///< the first card of each picture, by the picture's number
};

Cards CardsOf(const WideString& album, const Mode& mode) {
    Cards cards;
    ReadAlbum(album, "drawing", [&](const Entry& entry) {
        const auto [first, isNew] = cards.firsts.emplace(entry.picture->number, cards.all.size());
        cards.all.push_back(isNew ? MakeCard(entry, Page::kPicture, mode.mode)
                                  : SameCard(cards.all[first->second], entry));
    });
    return cards;
}

WideString NoteOn(const Cards& cards, const Mode& mode) {
    std::string note = Counted(cards.all.size(), "picture");
    if (cards.firsts.size() < cards.all.size())
        note += ", " + std::to_string(cards.firsts.size()) + " of them different";
    return StdA2W(note) + u" \u00B7 "_w + StdA2W(mode.name);
}

} // namespace

int Sheet(const Arguments& arguments) {
    const WideString& album = arguments.values.front();
    const WideString& path = arguments.values.back();
    const Mode& mode = FindMode(StdW2A(arguments.Option("--mode", u"fit"_w)));
    if (AreSameNames(File::GetFullPath(path), File::GetFullPath(album)))
        throw Failure{"the sheet would replace the album " + Shown(album)};
    const Cards cards = CardsOf(album, mode);
    Page page(File::GetFileTitleA(File::GetFullPath(album)), NoteOn(cards, mode), static_cast<int>(cards.all.size()));
    for (const Card& card : cards.all)
        page.Add(card, mode.mode);
    WritePng(page.Picture(), path);
    std::printf("drew %s onto %s\n", Counted(cards.all.size(), "picture").c_str(), Shown(path).c_str());
    return 0;
}

} // namespace kelalbum
