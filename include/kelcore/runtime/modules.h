#pragma once

/// @file
/// Modules: their files, versions and resources, and the language that the whole process speaks.

#include <kelcore/export.h>
#include <kelcore/platform.h>
#include <kelcore/text.h>

#include <list>

/// Names the language files of modules; an application implements it and hands it to ModuleBase::SetLanguage.
class ILanguageDLLName {
public:
    /// Asked for each module when its language file is to be loaded.
    /// @param language the current language.
    /// @param path holds the full path of the module's file; becomes the path of its language file.
    /// @return false when there is none; the module's own GetLanguageDLLName is asked next then, with @p path as it was
    ///         left here.
    virtual bool GetLanguageDLLName(unsigned short language, String& path) = 0;

protected:
    ~ILanguageDLLName() = default;
};

/// A module of the process, an executable or a library: its file, its version and its resources in the language that
/// the process speaks.
///
/// Derive one class for each module, make one object of it, and call Init with the module's instance, for example from
/// the derived constructor, and Free, for example from the derived destructor. Between the two the module is listed.
///
/// One language counts for the whole process. For each module there may be a language file, a library that holds
/// nothing but resources; the provider given to SetLanguage names it, or the module's own GetLanguageDLLName. It is
/// loaded at Init and at each SetLanguage, and strings, accelerators and most other resources come from it from then
/// on, provided that its product version equals the module's. A file of another version is refused with a warning on
/// the screen, and the module keeps to its own resources; a file that cannot be loaded is passed over in silence.
/// @code
/// class Editor : public ModuleBase {
/// public:
///     explicit Editor(HINSTANCE instance) { Init(instance); }
///     ~Editor() override { Free(); }
///     bool GetLanguageDLLName(unsigned short language, String& path) override {
///         if (language != 0x0407)
///             return false;
///         path = File::SwitchExtension(path, u".german.dll"_w);
///         return true;
///     }
/// };
///
/// String title;
/// title.LoadStringA(IDS_TITLE, 0, -1, &editor);
/// @endcode
/// Nothing here throws but for allocation: what is missing gives false, null, an empty text or a version of zeros. The
/// list of modules, the language, its provider and the accelerator table belong to the process and are not locked: all
/// that changes or walks them is one thread's business at a time. Modules may be destroyed after the library's own
/// static objects.
class KELCORE_API ModuleBase {
public:
    /// What GetProcedure finds; cast it to what the procedure is.
    using Procedure = int (*)();

    /// A module without an instance. The first one of the process makes the system's default language
    /// (`GetSystemDefaultLangID`) the current one, unless a language has been set.
    ModuleBase();
    ModuleBase(const ModuleBase&) = delete;
    ModuleBase& operator=(const ModuleBase&) = delete;
    /// Frees the language file (`FreeLibrary`). A module that is still listed leaves the list without a call of OnFree.
    virtual ~ModuleBase();

    /// Called at the end of Init; does nothing here.
    virtual void OnInit();
    /// Called at the start of Free; does nothing here.
    virtual void OnFree();
    /// Asked for this module's language file when the provider names none; see ILanguageDLLName. Init calls it, so in
    /// a constructor the class under construction answers.
    /// @return false here: no language file.
    virtual bool GetLanguageDLLName(unsigned short language, String& path);

    /// The full path of the module's file (`GetModuleFileNameA`), at most 1,023 bytes of it; that of the program before
    /// Init.
    String GetPath() const;
    /// The directory part of GetPath, as File::GetDirname gives it.
    String GetDirectory() const;
    /// The last component of GetPath.
    String GetFilename() const;
    /// The last component of GetPath without its extension.
    String GetName() const;
    /// Finds an exported procedure (`GetProcAddress`). @return null when the module has none of that name.
    Procedure GetProcedure(const NarrowString& name) const;

    /// The product version of the module's file: the parts of 1.2.3.4 are @p ms >> 16, @p ms & 0xFFFF, @p ls >> 16 and
    /// @p ls & 0xFFFF. Both are 0 when it has none.
    void GetModuleVersion(unsigned long& ms, unsigned long& ls);
    /// The product version of the file of @p instance, whose path must fit into 259 bytes.
    static void GetModuleVersion(HINSTANCE instance, unsigned long& ms, unsigned long& ls);
    /// The product version of the file at @p path (`GetFileVersionInfoSizeA`, `GetFileVersionInfoA`,
    /// `VerQueryValueA`).
    static void GetModuleVersion(const String& path, unsigned long& ms, unsigned long& ls);

    /// The first listed module whose GetPath is @p path, compared exactly, with case; null when there is none.
    static ModuleBase* GetModule(const String& path);
    /// A line for each listed module, "path    1.2.3.4\r\n", and an empty line at the end.
    static String GetProcessInformation();

    /// The static LoadStringA for this module, in the current language.
    bool LoadStringA(unsigned int id, String& text, int first, int last) const;
    /// Takes the lines @p first to @p last (String::GetLines; 0 and -1 for all) of string @p id from the string tables
    /// of @p instance (`FindResourceA`, `LoadResource`, `LockResource`, and `SizeofResource` to stay inside the block).
    /// Strings come in blocks of 16; one that was never given is an empty string of its block.
    /// @param id its low 20 bits count.
    /// @return false when there is no such block, or when the block ends before the string does; @p text is empty then.
    static bool LoadStringA(HINSTANCE instance, unsigned int id, String& text, int first, int last);

    /// Finds a resource (`FindResourceA`, `LoadResource`). Bitmaps and resources of the type "PICTURE" are the module's
    /// own in every language; all others are those of the current language.
    /// @param id its low 16 bits count.
    /// @param type the type's name, or its number up to 65535 in place of a pointer.
    /// @param size receives the size in bytes (`SizeofResource`) unless it is null; untouched when nothing is found.
    /// @return the handle to be locked (`LockResource`), which needs no freeing and is valid while the module, or its
    ///         language file, stays loaded; null when nothing is found.
    void* LoadResource(unsigned int id, const char* type, unsigned long* size) const;
    /// The address of a resource of this module for browsers: "res://path/type/id", where @p type counts as a number.
    String CreateResourceURL(unsigned int id, const char* type);

    /// Destroys the process's accelerator table (`DestroyAcceleratorTable`) and makes table @p id of this module, in
    /// the current language, the new one (`LoadAcceleratorsA`).
    /// @return false when there is no such table; the process has none then.
    bool LoadAcceleratorsA(unsigned int id);
    /// Loads an accelerator table of this module, in the current language, for the caller.
    /// @return null when there is no such table.
    HACCEL LoadAcceleratorsFromResource(unsigned int id);

    /// Makes @p language and @p provider those of the process, loads the language file of each listed module anew, in
    /// their order, and then calls ReloadResources of each ResourceTarget, in their order.
    ///
    /// Modules and targets may come and go meanwhile: one that goes is not called any more, one that comes has found
    /// the new language already and is not called. Only the module whose file is being asked for has to stay.
    /// @param provider is asked for language files from now on and must live until it is replaced; may be null.
    static void SetLanguage(unsigned short language, ILanguageDLLName* provider);
    /// The current language, 0 before the first module or SetLanguage.
    static unsigned short GetLanguage();

    /// Shows a message box in the current language (`MessageBoxIndirectA`).
    /// @param type the style, MB_ values.
    /// @return the button that was pressed, 0 when the box could not be shown.
    static int MessageBoxA(HWND owner, const char* text, const char* caption, unsigned int type);

protected:
    /// Gives the module its instance, lists it, loads its language file and calls OnInit. A module that had been freed
    /// may be initialised again; its former language file is freed then.
    void Init(HINSTANCE instance);
    /// Calls OnFree and takes the module off the list. Its language file stays until it is destroyed.
    void Free();

    /// The modules between Init and Free, in the order of their Init.
    static const std::list<ModuleBase*>& GetModules();

    /// Makes @p table the process's accelerator table; the former one is not destroyed.
    void SetAccelerators(HACCEL table);
    /// The process's accelerator table.
    HACCEL GetAccelerators() const;

    /// The accelerator table that all modules share; null until one is loaded or set.
    static HACCEL m_hAccel;

    /// The module's own instance; null before Init.
    HINSTANCE m_hInstance;
    /// Where resources come from: the language file if one is loaded, m_hInstance otherwise.
    HINSTANCE m_hResource;
    /// Not used by the library.
    String m_strReserved;

private:
    void LoadLanguageFile();
    void FreeLanguageFile();
};

/// Something that shows resources of modules and loads them again when the language changes.
///
/// Each lives on a list of the process from its construction to its destruction; a copy is a target of its own. It may
/// be destroyed after the library's own static objects. The list is not locked: see ModuleBase.
class KELCORE_API ResourceTarget {
public:
    /// Appends this target to the list.
    ResourceTarget();
    /// Appends the copy to the list.
    ResourceTarget(const ResourceTarget&);
    ResourceTarget& operator=(const ResourceTarget&);
    /// Takes this target off the list.
    virtual ~ResourceTarget();

    /// Called by ModuleBase::SetLanguage when all modules have their new language files.
    virtual void ReloadResources() = 0;
};
