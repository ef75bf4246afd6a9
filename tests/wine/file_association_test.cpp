#include "platform/file_association.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <aclapi.h>
#include <shlobj.h>

#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <string>

#include "forms/run_time_error.h"
#include "forms/win32/winapi/text.h"
#include "platform/message_window.h"
#include "platform/process.h"
#include "platform/registry.h"
#include "window_driver.h"

namespace nqp::test {
namespace {

using platform::RegistryKey;
using platform::RegistryValue;

// Below HKEY_CURRENT_USER; a value's place is its key, "|" and its name.
using Entries = std::map<std::string, std::string>;

constexpr char kClasses[] = "Software\\Classes\\";
constexpr char kCapabilities[] = "Software\\NuvexQuillonPlayer\\Capabilities";
constexpr char kRegisteredApplications[] = "Software\\RegisteredApplications";
constexpr char kRun[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr char kTitle[] = "Nuvex Quillon Player";
// On purpose without quotation marks.
constexpr char kCommand[] = "C:\\My Player\\nqp.exe %L";

constexpr char kTypeKey[] = "Software\\Classes\\.nqpa";
constexpr char kOpenWithKey[] = "Software\\Classes\\.nqpa\\OpenWithProgids";
constexpr char kProgId[] = "NuvexQuillonPlayer.nqpa";
constexpr char kProgIdKey[] = "Software\\Classes\\NuvexQuillonPlayer.nqpa";

std::string Described(const RegistryValue& value) {
    const auto text = value.Text();
    if (value.type == REG_SZ) return winapi::Utf8(*text);
    std::ostringstream description;
    description << "type " << value.type << ":";
    for (const int byte : value.data)
        description << " " << byte;
    return description.str();
}

const std::string kEmptyValue = Described({});

// The platform's limits: a value's name and a key's name, with their ends.
constexpr DWORD kLongestName = 16384;

// All that the call enumerates of a key.
template <class Call>
std::vector<std::wstring> NamesOf(const std::wstring& path, Call call) {
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &opened) != 0) return {};
    const std::unique_ptr<std::remove_pointer_t<HKEY>, decltype(&RegCloseKey)> key(opened,
                                                                                   RegCloseKey);
    std::vector<std::wstring> names;
    std::wstring name(kLongestName, L'\0');
    for (DWORD length = kLongestName;
         call(opened, static_cast<DWORD>(names.size()), name.data(), &length, nullptr, nullptr,
              nullptr, nullptr) == ERROR_SUCCESS;
         length = kLongestName) {
        names.push_back(name.substr(0, length));
    }
    return names;
}

void AddEntries(Entries& entries, const std::wstring& path) {
    const auto key = RegistryKey::OpenToRead(path);
    if (!key) return;
    entries[winapi::Utf8(path)] = "key";
    for (const std::wstring& name : NamesOf(path, RegEnumValueW)) {
        entries[winapi::Utf8(path + L"|" + name)] = Described(*key->Value(name));
    }
    for (const std::wstring& name : NamesOf(path, RegEnumKeyExW))
        AddEntries(entries, path + L"\\" + name);
}

Entries EntriesBelow(const std::string& path) {
    Entries entries;
    AddEntries(entries, winapi::Utf16(path));
    return entries;
}

// All that a registering could touch, and what it must not.
Entries Everything() {
    Entries entries;
    for (const wchar_t* path :
         {L"Software\\Classes", L"Software\\NuvexQuillonPlayer",
          L"Software\\RegisteredApplications", L"Software\\Microsoft\\Windows\\CurrentVersion\\Run",
          L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts"}) {
        AddEntries(entries, path);
    }
    return entries;
}

RegistryKey Made(const std::string& path) {
    return RegistryKey::Create(winapi::Utf16(path));
}

void SetText(const std::string& path, const std::string& name, const std::string& text) {
    Made(path).SetText(winapi::Utf16(name), winapi::Utf16(text));
}

// "none" where there is no such value.
std::string ValueAt(const std::string& path, const std::string& name) {
    const auto value = platform::RegistryValueAt(winapi::Utf16(path), winapi::Utf16(name));
    return value ? Described(*value) : "none";
}

std::string DefaultOf(const std::string& path) {
    return ValueAt(path, "");
}

bool Exists(const std::string& path) {
    return platform::RegistryKeyExists(winapi::Utf16(path));
}

void DeleteTree(const std::string& path) {
    platform::DeleteRegistryTree(winapi::Utf16(path));
}

std::unique_ptr<core::FileAssociation> TypeOf(const std::string& extension) {
    auto type = platform::SystemFileAssociations().Create();
    type->SetExtension(extension);
    return type;
}

void Register(const std::string& extension, const std::string& command = kCommand) {
    const auto type = TypeOf(extension);
    type->SetCommand(command);
    type->Register();
}

void UnRegister(const std::string& extension) {
    TypeOf(extension)->UnRegister();
}

// The sentence of the run-time error; empty without one.
std::string ErrorOf(const std::function<void()>& step) {
    try {
        step();
    } catch (const forms::RunTimeError& error) {
        return error.what();
    }
    return {};
}

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

// What a registered type leaves behind ends with the test; whatever else a test did not put back
// makes it fail.
class FileAssociationTest : public testing::Test {
protected:
    void SetUp() override {
        // The system's own keys; a new Wine prefix may lack them.
        Made("Software\\Classes");
        Made(kRun);
        before_ = Everything();
    }

    void TearDown() override {
        for (const char* extension : {".nqpa", ".nqpb"}) {
            UnRegister(extension);
            DeleteTree(std::string(kClasses) + extension);
        }
        EXPECT_EQ(Everything(), before_);
    }

private:
    Entries before_;
};

TEST_F(FileAssociationTest, DescribesTheTypeAndHowItIsOpened) {
    Register(".nqpa");
    const std::string icon = "\"" + winapi::Utf8(platform::ProgramFile().wstring()) + "\",0";
    EXPECT_EQ(DefaultOf(kProgIdKey), "NQPA media file");
    EXPECT_EQ(ValueAt(kProgIdKey, "FriendlyTypeName"), "NQPA media file");
    EXPECT_EQ(DefaultOf(std::string(kProgIdKey) + "\\DefaultIcon"), icon);
    EXPECT_EQ(ValueAt(std::string(kProgIdKey) + "\\shell\\open", "FriendlyAppName"), kTitle);
    EXPECT_EQ(DefaultOf(std::string(kProgIdKey) + "\\shell\\open\\command"), kCommand);
}

TEST_F(FileAssociationTest, MakesTheProgramTheHandlerOfTheType) {
    Register(".nqpa");
    const Entries expected{{kTypeKey, "key"},
                           {std::string(kTypeKey) + "|", kProgId},
                           {kOpenWithKey, "key"},
                           {std::string(kOpenWithKey) + "|" + kProgId, kEmptyValue}};
    EXPECT_EQ(EntriesBelow(kTypeKey), expected);
}

TEST_F(FileAssociationTest, ListsTheProgramInTheSystemsSettings) {
    Register(".nqpa");
    EXPECT_EQ(ValueAt(kRegisteredApplications, kTitle), kCapabilities);
    EXPECT_EQ(ValueAt(kCapabilities, "ApplicationName"), kTitle);
    EXPECT_TRUE(ValueAt(kCapabilities, "ApplicationDescription").ends_with("."));
    EXPECT_TRUE(ValueAt(kCapabilities, "ApplicationIcon").ends_with(".exe\",0"));
    EXPECT_EQ(ValueAt(std::string(kCapabilities) + "\\FileAssociations", ".nqpa"), kProgId);
}

// Read as another program reads it.
TEST_F(FileAssociationTest, StoresTheCommandAsAPlainText) {
    Register(".nqpa");
    const std::wstring path = winapi::Utf16(std::string(kProgIdKey) + "\\shell\\open\\command");
    wchar_t command[MAX_PATH]{};
    DWORD size = sizeof command;
    ASSERT_EQ(RegGetValueW(HKEY_CURRENT_USER, path.c_str(), nullptr, RRF_RT_REG_SZ, nullptr,
                           command, &size),
              ERROR_SUCCESS);
    EXPECT_EQ(winapi::Utf8(command), kCommand);
    EXPECT_EQ(size, sizeof kCommand * sizeof(wchar_t));
}

TEST_F(FileAssociationTest, NamesTheTypesThatThePlayerKnows) {
    const Entries names{{".asf", "ASF video"},   {".asx", "ASX playlist"}, {".au", "AU audio"},
                        {".avi", "AVI video"},   {".mp3", "MP3 audio"},    {".wav", "WAV audio"},
                        {".mpeg", "MPEG video"}, {".wmv", "WMV video"}};
    const Entries before = Everything();
    for (const auto& [extension, name] : names) {
        Register(extension);
        EXPECT_EQ(DefaultOf(std::string(kClasses) + "NuvexQuillonPlayer" + extension), name);
        EXPECT_EQ(DefaultOf(kClasses + extension), "NuvexQuillonPlayer" + extension);
    }
    for (const auto& [extension, name] : names)
        UnRegister(extension);
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, TakesAnExtensionInCapitalsForTheSame) {
    Register(".NQPA");
    EXPECT_EQ(DefaultOf(kTypeKey), kProgId);
    UnRegister(".nqPa");
    EXPECT_FALSE(Exists(kTypeKey));
}

TEST_F(FileAssociationTest, CommandKeepsLettersOfEveryScript) {
    const std::string command = "C:\\Плеер\\映画 Ü\\nqp.exe %L";
    Register(".nqpa", command);
    EXPECT_EQ(DefaultOf(std::string(kProgIdKey) + "\\shell\\open\\command"), command);
}

TEST_F(FileAssociationTest, ExtensionKeepsLettersOfEveryScript) {
    const Entries before = Everything();
    Register(".кино");
    EXPECT_EQ(DefaultOf(std::string(kClasses) + ".кино"), "NuvexQuillonPlayer.кино");
    EXPECT_EQ(DefaultOf(std::string(kClasses) + "NuvexQuillonPlayer.кино"), "КИНО media file");
    UnRegister(".кино");
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, TakesAnotherCommandWhenRegisteredAgain) {
    Register(".nqpa");
    Register(".nqpa", "D:\\nqp.exe %L");
    EXPECT_EQ(DefaultOf(std::string(kProgIdKey) + "\\shell\\open\\command"), "D:\\nqp.exe %L");
}

TEST_F(FileAssociationTest, UnRegisterRemovesAKeyThatWasMissing) {
    const Entries before = Everything();
    Register(".nqpa");
    UnRegister(".nqpa");
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, UnRegisterLeavesAKeyThatWasEmpty) {
    Made(kTypeKey);
    const Entries before = Everything();
    Register(".nqpa");
    UnRegister(".nqpa");
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, UnRegisterLeavesAKeyThatHadNoHandler) {
    SetText(kTypeKey, "PerceivedType", "video");
    Made(kOpenWithKey);
    const Entries before = Everything();
    Register(".nqpa");
    EXPECT_EQ(ValueAt(kTypeKey, "PerceivedType"), "video");
    UnRegister(".nqpa");
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, UnRegisterLeavesWhatOthersAddedToAKeyThatWasMissing) {
    Register(".nqpa");
    SetText(kTypeKey, "Content Type", "video/x-nqpa");
    UnRegister(".nqpa");
    const Entries expected{{kTypeKey, "key"},
                           {std::string(kTypeKey) + "|Content Type", "video/x-nqpa"}};
    EXPECT_EQ(EntriesBelow(kTypeKey), expected);
}

TEST_F(FileAssociationTest, UnRegisterBringsTheOldHandlerBack) {
    SetText(kTypeKey, "", "Other.Player");
    const Entries before = Everything();
    Register(".nqpa");
    EXPECT_EQ(DefaultOf(kTypeKey), kProgId);
    UnRegister(".nqpa");
    EXPECT_EQ(DefaultOf(kTypeKey), "Other.Player");
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, UnRegisterBringsAHandlerOfAnyKindBack) {
    const RegistryValue expandable{REG_EXPAND_SZ, RegistryValue::OfText(L"%Other%").data};
    const RegistryValue bytes{REG_BINARY, std::vector<BYTE>(2000, 7)};
    for (const RegistryValue& handler : {expandable, bytes, RegistryValue::OfText(L"")}) {
        Made(kTypeKey).Set(L"", handler);
        const Entries before = Everything();
        Register(".nqpa");
        UnRegister(".nqpa");
        EXPECT_EQ(Everything(), before);
    }
}

TEST_F(FileAssociationTest, LeavesTheEntriesOfOtherProgramsAlone) {
    SetText(kTypeKey, "", "Other.Player");
    SetText(kTypeKey, "PerceivedType", "audio");
    Made(kOpenWithKey).Set(L"Third.Player", {});
    SetText(kOpenWithKey, "Fourth.Player", "");
    SetText(std::string(kTypeKey) + "\\ShellEx", "", "{0}");
    SetText(kRegisteredApplications, "Other Player", "Software\\Other\\Capabilities");
    Entries others = EntriesBelow(kTypeKey);
    others.erase(std::string(kTypeKey) + "|");
    const Entries before = Everything();
    Register(".nqpa");
    for (const auto& [place, value] : others)
        EXPECT_EQ(Everything()[place], value) << place;
    UnRegister(".nqpa");
    EXPECT_EQ(Everything(), before);
    platform::DeleteRegistryValue(winapi::Utf16(kRegisteredApplications), L"Other Player");
    platform::DeleteEmptyRegistryKey(winapi::Utf16(kRegisteredApplications));
}

TEST_F(FileAssociationTest, RegisteredTwiceIsTheSameAsOnce) {
    SetText(kTypeKey, "", "Other.Player");
    const Entries before = Everything();
    Register(".nqpa");
    const Entries once = Everything();
    Register(".nqpa");
    EXPECT_EQ(Everything(), once);
    UnRegister(".nqpa");
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, RegisteredTwiceStillRemovesAKeyThatWasMissing) {
    const Entries before = Everything();
    Register(".nqpa");
    const Entries once = Everything();
    Register(".nqpa");
    EXPECT_EQ(Everything(), once);
    UnRegister(".nqpa");
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, RegisteredAfterUnRegisterIsTheSameAsAtFirst) {
    SetText(kTypeKey, "", "Other.Player");
    Register(".nqpa");
    const Entries first = Everything();
    UnRegister(".nqpa");
    Register(".nqpa");
    EXPECT_EQ(Everything(), first);
}

TEST_F(FileAssociationTest, UnRegisterLeavesTheTypeToAProgramThatHasTakenIt) {
    SetText(kTypeKey, "", "Other.Player");
    Register(".nqpa");
    SetText(kTypeKey, "", "Newer.Player");
    UnRegister(".nqpa");
    const Entries expected{{kTypeKey, "key"}, {std::string(kTypeKey) + "|", "Newer.Player"}};
    EXPECT_EQ(EntriesBelow(kTypeKey), expected);
    EXPECT_FALSE(Exists(kProgIdKey));
    EXPECT_FALSE(Exists(kCapabilities));
}

TEST_F(FileAssociationTest, GivesTheTypeBackToAProgramThatHadTakenItInBetween) {
    SetText(kTypeKey, "", "Other.Player");
    Register(".nqpa");
    SetText(kTypeKey, "", "Newer.Player");
    Register(".nqpa");
    EXPECT_EQ(DefaultOf(kTypeKey), kProgId);
    UnRegister(".nqpa");
    EXPECT_EQ(DefaultOf(kTypeKey), "Newer.Player");
}

TEST_F(FileAssociationTest, ForgetsAHandlerThatWasRemovedInBetween) {
    SetText(kTypeKey, "", "Other.Player");
    Register(".nqpa");
    Made(kTypeKey).Delete(L"");
    Register(".nqpa");
    UnRegister(".nqpa");
    EXPECT_EQ(DefaultOf(kTypeKey), "none");
}

TEST_F(FileAssociationTest, NeverTakesItselfForTheOldHandler) {
    SetText(kTypeKey, "", kProgId);
    Register(".nqpa");
    UnRegister(".nqpa");
    EXPECT_EQ(DefaultOf(kTypeKey), "none");
}

TEST_F(FileAssociationTest, NeverTakesItselfInOtherLettersForTheOldHandler) {
    Register(".nqpa");
    SetText(kTypeKey, "", "NUVEXQUILLONPLAYER.NQPA");
    Register(".nqpa");
    UnRegister(".nqpa");
    EXPECT_FALSE(Exists(kTypeKey));
}

TEST_F(FileAssociationTest, TheLastTypeTakesTheCapabilitiesWithIt) {
    const Entries before = Everything();
    const std::string types = std::string(kCapabilities) + "\\FileAssociations";
    Register(".nqpa");
    Register(".nqpb");
    UnRegister(".nqpa");
    EXPECT_EQ(ValueAt(types, ".nqpa"), "none");
    EXPECT_EQ(ValueAt(types, ".nqpb"), "NuvexQuillonPlayer.nqpb");
    EXPECT_EQ(ValueAt(kRegisteredApplications, kTitle), kCapabilities);
    EXPECT_EQ(DefaultOf(std::string(kClasses) + ".nqpb"), "NuvexQuillonPlayer.nqpb");
    UnRegister(".nqpb");
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, KeepsOtherThingsInTheProgramsOwnKey) {
    SetText("Software\\NuvexQuillonPlayer", "Other", "kept");
    const Entries before = Everything();
    Register(".nqpa");
    UnRegister(".nqpa");
    EXPECT_EQ(Everything(), before);
    DeleteTree("Software\\NuvexQuillonPlayer");
}

TEST_F(FileAssociationTest, UnRegisterOfATypeThatIsNotRegisteredChangesNothing) {
    SetText(kTypeKey, "", "Other.Player");
    Made(kOpenWithKey);
    Register(".nqpb");
    const Entries before = Everything();
    UnRegister(".nqpa");
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, UnRegisterTwiceIsTheSameAsOnce) {
    const Entries before = Everything();
    Register(".nqpa");
    UnRegister(".nqpa");
    UnRegister(".nqpa");
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, UnRegisterClearsWhatAnEarlierOneCouldNotFinish) {
    SetText(kTypeKey, "", "Other.Player");
    const Entries before = Everything();
    Register(".nqpa");
    SetText(kTypeKey, "", "Other.Player");
    platform::DeleteRegistryValue(winapi::Utf16(kOpenWithKey), winapi::Utf16(kProgId));
    platform::DeleteRegistryValue(winapi::Utf16(kRegisteredApplications), winapi::Utf16(kTitle));
    UnRegister(".nqpa");
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, UnRegisterWorksWithoutTheProgramsNotes) {
    Register(".nqpa");
    DeleteTree(kProgIdKey);
    UnRegister(".nqpa");
    EXPECT_EQ(DefaultOf(kTypeKey), "none");
    EXPECT_EQ(ValueAt(kOpenWithKey, kProgId), "none");
    EXPECT_FALSE(Exists(kCapabilities));
}

// ---- what is refused ----

TEST_F(FileAssociationTest, RefusesWhatIsNoExtension) {
    const Entries before = Everything();
    const std::string nulls(".\0\0", 3);
    for (const std::string& bad :
         {std::string(), std::string("."), std::string("avi"), std::string(".\\"),
          std::string("\\.avi"), std::string(".avi\\shell"), std::string(".a/b"),
          std::string(".a*"), std::string(".a\nb"), nulls, std::string("*")}) {
        const auto type = platform::SystemFileAssociations().Create();
        type->SetCommand(kCommand);
        EXPECT_TRUE(Contains(ErrorOf([&] { type->SetExtension(bad); }), "file type")) << bad;
        EXPECT_NE(ErrorOf([&] { type->Register(); }), "") << bad;
        EXPECT_NE(ErrorOf([&] { type->UnRegister(); }), "") << bad;
    }
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, ForgetsTheExtensionBeforeARefusedOne) {
    Register(".nqpa");
    const Entries before = Everything();
    const auto type = TypeOf(".nqpa");
    EXPECT_THROW(type->SetExtension("."), forms::RunTimeError);
    EXPECT_THROW(type->UnRegister(), forms::RunTimeError);
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, RefusesToRegisterWithoutACommand) {
    const Entries before = Everything();
    EXPECT_TRUE(Contains(ErrorOf([] { TypeOf(".nqpa")->Register(); }), ".nqpa"));
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, ReportsANameThatIsTooLongForAKey) {
    const Entries before = Everything();
    for (const std::size_t length : {240U, 300U, 70000U}) {
        const std::string extension = std::string(".").append(length, 'x');
        EXPECT_TRUE(Contains(ErrorOf([&] { Register(extension); }), extension)) << length;
        EXPECT_EQ(Everything(), before);
    }
}

// Nothing that is kept can be made below a key that is not.
void MakeVolatile(const std::string& path) {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, winapi::Utf16(path).c_str(), 0, nullptr,
                              REG_OPTION_VOLATILE, KEY_READ | KEY_WRITE, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    RegCloseKey(key);
}

TEST_F(FileAssociationTest, LeavesTheOldHandlerWhenTheTypeTakesNoEntry) {
    MakeVolatile(kTypeKey);
    SetText(kTypeKey, "", "Other.Player");
    const Entries before = Everything();
    EXPECT_TRUE(Contains(ErrorOf([] { Register(".nqpa"); }), ".nqpa"));
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, KeepsTheOtherTypesWhenOneTakesNoEntry) {
    Register(".nqpb");
    MakeVolatile(kTypeKey);
    const Entries before = Everything();
    EXPECT_NE(ErrorOf([] { Register(".nqpa"); }), "");
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, LeavesTheOldHandlerWhenTheCapabilitiesCannotBeMade) {
    SetText(kTypeKey, "", "Other.Player");
    const Entries before = Everything();
    MakeVolatile("Software\\NuvexQuillonPlayer");
    EXPECT_NE(ErrorOf([] { Register(".nqpa"); }), "");
    EXPECT_EQ(Everything(), before);
}

// While it lives, the key may only be read.
class ReadOnlyKey {
public:
    explicit ReadOnlyKey(const std::string& path) {
        EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, winapi::Utf16(path).c_str(), 0,
                                READ_CONTROL | WRITE_DAC, &key_),
                  ERROR_SUCCESS);
        EXPECT_EQ(GetSecurityInfo(key_, SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr,
                                  nullptr, &permissions_, nullptr, &descriptor_),
                  DWORD{ERROR_SUCCESS});
        wchar_t name[] = L"EVERYONE";
        EXPLICIT_ACCESSW everyone{};
        everyone.grfAccessPermissions = KEY_READ;
        everyone.grfAccessMode = SET_ACCESS;
        everyone.Trustee.TrusteeForm = TRUSTEE_IS_NAME;
        everyone.Trustee.ptstrName = name;
        PACL readOnly = nullptr;
        EXPECT_EQ(SetEntriesInAclW(1, &everyone, nullptr, &readOnly), DWORD{ERROR_SUCCESS});
        SetPermissions(PROTECTED_DACL_SECURITY_INFORMATION, readOnly);
        LocalFree(readOnly);
    }
    ~ReadOnlyKey() {
        SetPermissions(UNPROTECTED_DACL_SECURITY_INFORMATION, permissions_);
        LocalFree(descriptor_);
        RegCloseKey(key_);
    }
    ReadOnlyKey(const ReadOnlyKey&) = delete;
    ReadOnlyKey& operator=(const ReadOnlyKey&) = delete;

private:
    void SetPermissions(SECURITY_INFORMATION inheritance, PACL permissions) {
        EXPECT_EQ(SetSecurityInfo(key_, SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION | inheritance,
                                  nullptr, nullptr, permissions, nullptr),
                  DWORD{ERROR_SUCCESS});
    }

    HKEY key_ = nullptr;
    PACL permissions_ = nullptr;  // inside the descriptor
    PSECURITY_DESCRIPTOR descriptor_ = nullptr;
};

TEST_F(FileAssociationTest, LeavesATypeThatMayOnlyBeRead) {
    SetText(kTypeKey, "", "Other.Player");
    Made(kOpenWithKey);
    const Entries before = Everything();
    const ReadOnlyKey readOnly(kTypeKey);
    EXPECT_EQ(ErrorOf([] { UnRegister(".nqpa"); }), "");
    EXPECT_EQ(ErrorOf([] { Register(".nqpa"); }),
              "Files of the type .nqpa could not be set to open with Nuvex Quillon Player "
              "(Windows error 5).");
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, KeepsATypeThatCannotBeGivenBack) {
    SetText(kTypeKey, "", "Other.Player");
    Register(".nqpa");
    const Entries before = Everything();
    {
        const ReadOnlyKey readOnly(kTypeKey);
        EXPECT_TRUE(Contains(ErrorOf([] { UnRegister(".nqpa"); }), ".nqpa"));
        EXPECT_EQ(Everything(), before);
    }
    UnRegister(".nqpa");
    EXPECT_EQ(DefaultOf(kTypeKey), "Other.Player");
}

TEST_F(FileAssociationTest, GivesTheTypeBackBeforeItsOwnEntryGoes) {
    SetText(kTypeKey, "", "Other.Player");
    const Entries before = Everything();
    Register(".nqpa");
    {
        const ReadOnlyKey readOnly(std::string(kCapabilities) + "\\FileAssociations");
        EXPECT_TRUE(Contains(ErrorOf([] { UnRegister(".nqpa"); }), ".nqpa"));
        EXPECT_EQ(DefaultOf(kTypeKey), "Other.Player");
        EXPECT_TRUE(Exists(std::string(kProgIdKey) + "\\shell\\open\\command"));
    }
    UnRegister(".nqpa");
    EXPECT_EQ(Everything(), before);
}

TEST_F(FileAssociationTest, ReportsAStartEntryThatCannotBeMadeOrRemoved) {
    const auto start = platform::SystemFileAssociations().Create();
    {
        const ReadOnlyKey readOnly(kRun);
        EXPECT_TRUE(Contains(ErrorOf([&] { start->RegisterStart("nqp.exe"); }), kTitle));
        EXPECT_EQ(ErrorOf([&] { start->UnRegisterStart(); }), "");
    }
    start->RegisterStart("nqp.exe");
    {
        const ReadOnlyKey readOnly(kRun);
        EXPECT_TRUE(Contains(ErrorOf([&] { start->UnRegisterStart(); }), kTitle));
    }
    start->UnRegisterStart();
}

// ---- the shell ----

class ChangeListener final : public platform::MessageWindow {
public:
    ChangeListener() {
        Description description;
        description.className = L"nqp.ChangeListener";
        description.style = WS_POPUP;
        Create(description);
        const SHChangeNotifyEntry everywhere{nullptr, TRUE};
        registration_ = SHChangeNotifyRegister(Handle(), SHCNRF_ShellLevel | SHCNRF_NewDelivery,
                                               SHCNE_ASSOCCHANGED, kChanged, 1, &everywhere);
    }
    ~ChangeListener() override {
        SHChangeNotifyDeregister(registration_);
        Destroy();
    }

    int changes = 0;

private:
    static constexpr UINT kChanged = WM_APP + 1;

    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == kChanged) ++changes;
        return MessageWindow::OnMessage(message, wParam, lParam);
    }

    ULONG registration_ = 0;
};

TEST_F(FileAssociationTest, TellsTheShellOfEachChangeOnce) {
    ChangeListener listener;
    UnRegister(".nqpa");
    Register(".nqpa");
    EXPECT_TRUE(WaitUntil([&] { return listener.changes == 1; }));
    UnRegister(".nqpa");
    EXPECT_TRUE(WaitUntil([&] { return listener.changes == 2; }));
}

// ---- the start with the system ----

TEST_F(FileAssociationTest, StartsWithTheSystemUntilItIsTakenFromThere) {
    SetText(kRun, "Other", "other.exe");
    const Entries before = Everything();
    const auto start = platform::SystemFileAssociations().Create();
    start->RegisterStart("C:\\Мой Player\\nqp.exe /hidden");
    EXPECT_EQ(ValueAt(kRun, kTitle), "C:\\Мой Player\\nqp.exe /hidden");
    start->RegisterStart("D:\\nqp.exe");
    EXPECT_EQ(ValueAt(kRun, kTitle), "D:\\nqp.exe");
    start->UnRegisterStart();
    EXPECT_EQ(Everything(), before);
    start->UnRegisterStart();
    EXPECT_EQ(Everything(), before);
    platform::DeleteRegistryValue(winapi::Utf16(kRun), L"Other");
}

TEST_F(FileAssociationTest, StartEntryThatIsMissingIsNoError) {
    const Entries before = Everything();
    EXPECT_NO_THROW(platform::SystemFileAssociations().Create()->UnRegisterStart());
    EXPECT_EQ(Everything(), before);
}

}  // namespace
}  // namespace nqp::test
