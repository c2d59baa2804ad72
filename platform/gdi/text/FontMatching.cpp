#include "platform/gdi/text/FontMatching.h"

#include "platform/gdi/text/FontFace.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <array>
#include <memory>
#include <mutex>
#include <new>
#include <strings.h>
#include <vector>

namespace kel::platform {

constinit std::atomic<unsigned> fontFilesVersion{0};

namespace {

struct DestroyPattern {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, DestroyPattern>;

struct DestroyCharacters {
    void operator()(FcCharSet* set) const { FcCharSetDestroy(set); }
};

const FcChar8* Bytes(const std::string& text) {
    return reinterpret_cast<const FcChar8*>(text.c_str());
}

/// A configuration of our own, so that files added here are not seen by the rest of the program. Its lock also guards
/// the list of these files.
struct Fonts {
    std::mutex mutex;
    FcConfig* config = FcInitLoadConfigAndFonts();
    std::vector<std::string> added;

    // Never destroyed: fonts are used by destructors of static objects.
    static Fonts& Get() {
        static Fonts& fonts = *new Fonts;
        return fonts;
    }
};

/// Names of faces and the faces that stand for them, in order of preference.
struct StandIn {
    const char* name;
    const char* faces[2];
};
constexpr const char* kSans[2] = {"Liberation Sans", "DejaVu Sans"};
constexpr const char* kSerif[2] = {"Liberation Serif", "DejaVu Serif"};
constexpr const char* kFixed[2] = {"Liberation Mono", "DejaVu Sans Mono"};
constexpr StandIn kStandIns[] = {
    {"Arial", {kSans[0], kSans[1]}},
    {"Helvetica", {kSans[0], kSans[1]}},
    {"Helv", {kSans[0], kSans[1]}},
    {"Microsoft Sans Serif", {kSans[0], kSans[1]}},
    {"MS Sans Serif", {kSans[0], kSans[1]}},
    {"MS Shell Dlg", {kSans[0], kSans[1]}},
    {"MS Shell Dlg 2", {kSans[0], kSans[1]}},
    {"Segoe UI", {kSans[0], kSans[1]}},
    {"System", {kSans[0], kSans[1]}},
    {"Tahoma", {kSans[0], kSans[1]}},
    {"Verdana", {kSans[1], kSans[0]}},
    {"Arial Narrow", {"Liberation Sans Narrow", kSans[0]}},
    {"Times New Roman", {kSerif[0], kSerif[1]}},
    {"Times", {kSerif[0], kSerif[1]}},
    {"Tms Rmn", {kSerif[0], kSerif[1]}},
    {"MS Serif", {kSerif[0], kSerif[1]}},
    {"Courier New", {kFixed[0], kFixed[1]}},
    {"Courier", {kFixed[0], kFixed[1]}},
    {"Fixedsys", {kFixed[0], kFixed[1]}},
    {"Terminal", {kFixed[0], kFixed[1]}},
    {"Lucida Console", {kFixed[1], kFixed[0]}},
};

bool SameName(const char* a, const char* b) {
    return strcasecmp(a, b) == 0;
}

const StandIn* StandInFor(const std::string& name) {
    const auto* found = std::find_if(std::begin(kStandIns), std::end(kStandIns),
                                     [&](const StandIn& row) { return SameName(row.name, name.c_str()); });
    return found == std::end(kStandIns) ? nullptr : found;
}

bool IsFixed(BYTE pitchAndFamily) {
    return (pitchAndFamily & 3) == FIXED_PITCH || (pitchAndFamily & 0xF0) == FF_MODERN;
}

const char* const* FacesOfFamily(BYTE pitchAndFamily) {
    return IsFixed(pitchAndFamily) ? kFixed : (pitchAndFamily & 0xF0) == FF_ROMAN ? kSerif : kSans;
}

const char* GenericName(BYTE pitchAndFamily) {
    return IsFixed(pitchAndFamily) ? "monospace" : (pitchAndFamily & 0xF0) == FF_ROMAN ? "serif" : "sans-serif";
}

int WantedWeight(const FaceRequest& request) {
    return request.weight == 0 ? FW_NORMAL : std::clamp(request.weight, 1, 1000);
}

Pattern PatternFor(const FaceRequest& request, const char* name) {
    Pattern pattern(FcPatternCreate());
    if (!pattern)
        throw std::bad_alloc();
    FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(name));
    FcPatternAddInteger(pattern.get(), FC_WEIGHT, FcWeightFromOpenType(WantedWeight(request)));
    FcPatternAddInteger(pattern.get(), FC_SLANT, request.italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue);
    return pattern;
}

Pattern BestOf(const Fonts& fonts, FcPattern* pattern) {
    FcConfigSubstitute(fonts.config, pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);
    FcResult result = FcResultMatch;
    Pattern best(FcFontMatch(fonts.config, pattern, &result));
    FcBool scalable = FcFalse;
    if (best && FcPatternGetBool(best.get(), FC_SCALABLE, 0, &scalable) == FcResultMatch && scalable)
        return best;
    return nullptr;
}

bool HasName(FcPattern* pattern, const char* name) {
    FcChar8* family = nullptr;
    for (int i = 0; FcPatternGetString(pattern, FC_FAMILY, i, &family) == FcResultMatch; ++i)
        if (SameName(reinterpret_cast<const char*>(family), name))
            return true;
    return false;
}

std::string TextOf(FcPattern* pattern, const char* object) {
    FcChar8* text = nullptr;
    return FcPatternGetString(pattern, object, 0, &text) == FcResultMatch ? reinterpret_cast<const char*>(text) : "";
}

int NumberOf(FcPattern* pattern, const char* object, int otherwise) {
    int number = 0;
    return FcPatternGetInteger(pattern, object, 0, &number) == FcResultMatch ? number : otherwise;
}

FaceChoice ChoiceOf(const FaceRequest& request, FcPattern* found, const std::string& name) {
    FaceChoice choice;
    choice.file = TextOf(found, FC_FILE);
    choice.index = NumberOf(found, FC_INDEX, 0);
    choice.name = name.empty() ? TextOf(found, FC_FAMILY) : name;
    choice.weight = FcWeightToOpenType(NumberOf(found, FC_WEIGHT, FC_WEIGHT_REGULAR));
    choice.bold = WantedWeight(request) > 550 && choice.weight <= 550;
    choice.slant = request.italic && NumberOf(found, FC_SLANT, FC_SLANT_ROMAN) == FC_SLANT_ROMAN;
    return choice;
}

/// A face that really bears the name.
std::optional<FaceChoice> FaceNamed(const Fonts& fonts, const FaceRequest& request, const char* name,
                                    const std::string& counts) {
    const Pattern pattern = PatternFor(request, name);
    const Pattern best = BestOf(fonts, pattern.get());
    if (!best || !HasName(best.get(), name))
        return std::nullopt;
    return ChoiceOf(request, best.get(), counts);
}

std::optional<FaceChoice> FaceNamed(const Fonts& fonts, const FaceRequest& request, const char* const* names,
                                    const std::string& counts) {
    for (int i = 0; i < 2; ++i)
        if (auto choice = FaceNamed(fonts, request, names[i], counts))
            return choice;
    return std::nullopt;
}

} // namespace

std::optional<FaceChoice> ChooseFace(const FaceRequest& request) {
    Fonts& fonts = Fonts::Get();
    std::lock_guard guard(fonts.mutex);
    std::optional<FaceChoice> choice;
    if (!request.name.empty())
        choice = FaceNamed(fonts, request, request.name.c_str(), request.name);
    const StandIn* standIn = StandInFor(request.name);
    if (!choice && standIn)
        choice = FaceNamed(fonts, request, standIn->faces, request.name);
    if (!choice)
        choice = FaceNamed(fonts, request, FacesOfFamily(request.pitchAndFamily), {});
    if (choice)
        return choice;
    const Pattern pattern = PatternFor(request, GenericName(request.pitchAndFamily));
    const Pattern best = BestOf(fonts, pattern.get());
    return best ? std::optional(ChoiceOf(request, best.get(), {})) : std::nullopt;
}

std::optional<FaceChoice> ChooseFaceWith(const FaceRequest& request, char32_t code) {
    Fonts& fonts = Fonts::Get();
    std::lock_guard guard(fonts.mutex);
    const std::unique_ptr<FcCharSet, DestroyCharacters> wanted(FcCharSetCreate());
    if (!wanted || !FcCharSetAddChar(wanted.get(), code))
        throw std::bad_alloc();
    const Pattern pattern = PatternFor(request, GenericName(request.pitchAndFamily));
    FcPatternAddCharSet(pattern.get(), FC_CHARSET, wanted.get());
    const Pattern best = BestOf(fonts, pattern.get());
    FcCharSet* has = nullptr;
    if (!best || FcPatternGetCharSet(best.get(), FC_CHARSET, 0, &has) != FcResultMatch || !FcCharSetHasChar(has, code))
        return std::nullopt;
    return ChoiceOf(request, best.get(), {});
}

int AddFontFile(const std::string& file) {
    const int faces = FacesInFile(file);
    Fonts& fonts = Fonts::Get();
    std::lock_guard guard(fonts.mutex);
    if (faces == 0 || !FcConfigAppFontAddFile(fonts.config, Bytes(file)))
        return 0;
    fonts.added.push_back(file);
    ++fontFilesVersion;
    return faces;
}

bool RemoveFontFile(const std::string& file) {
    Fonts& fonts = Fonts::Get();
    std::lock_guard guard(fonts.mutex);
    const auto found = std::find(fonts.added.begin(), fonts.added.end(), file);
    if (found == fonts.added.end())
        return false;
    fonts.added.erase(found);
    FcConfigAppFontClear(fonts.config);
    for (const std::string& other : fonts.added)
        FcConfigAppFontAddFile(fonts.config, Bytes(other));
    ++fontFilesVersion;
    return true;
}

} // namespace kel::platform
