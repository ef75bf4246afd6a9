#include "platform/automation/registration.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <objbase.h>

#include "base/file.h"
#include "classes.h"
#include "core/companion.h"
#include "core/wizard.h"
#include "forms/win32/winapi/text.h"
#include "platform/automation/companion_class.h"
#include "platform/automation/wizard_client.h"
#include "platform/automation/wizard_interface.h"
#include "platform/process.h"
#include "processes.h"
#include "temp_folder.h"

namespace nqp::test {
namespace {

const std::wstring kWizardKey = std::wstring(L"CLSID\\") + platform::kWizardClass;
const std::wstring kWizardServer = kWizardKey + L"\\LocalServer32";
const std::wstring kCompanionServer =
    std::wstring(L"CLSID\\") + platform::kCompanionClass + L"\\LocalServer32";
const std::wstring kInterfaceKey = std::wstring(L"Interface\\") + platform::kWizardInterface;
const std::wstring kLibrary = std::wstring(L"TypeLib\\") + platform::kWizardTypeLibrary;
constexpr wchar_t kTypeLibraryMarshaler[] = L"{00020424-0000-0000-C000-000000000046}";

class RegistrationTest : public testing::Test {
protected:
    void SetUp() override { RemoveClasses(); }
    void TearDown() override { RemoveClasses(); }

    // A program folder with blanks and letters of two scripts.
    RegistrationTest() {
        programFolder_ = folder_.Path() / base::PathFromUtf8("播放 器");
        program_ = programFolder_ / "nqp.exe";
        std::filesystem::create_directory(programFolder_);
    }

    void AddCompanion() const { base::PutFileInPlace(Companion(), std::string("program")); }
    std::filesystem::path Companion() const { return programFolder_ / core::kCompanionFileName; }

    TempFolder folder_;
    std::filesystem::path programFolder_;
    std::filesystem::path program_;
};

TEST_F(RegistrationTest, WritesAllThatClientsLookUp) {
    platform::RegisterAutomation(program_);
    const std::string classId = winapi::Utf8(platform::kWizardClass);
    const std::string library = winapi::Utf8(platform::kWizardTypeLibrary);
    EXPECT_EQ(ClassText(L"NQP.CWizard\\CLSID"), classId);
    EXPECT_EQ(ClassText(kWizardServer), Quoted(program_));
    EXPECT_EQ(ClassText(kWizardKey + L"\\ProgID"), "NQP.CWizard");
    EXPECT_EQ(ClassText(kWizardKey + L"\\TypeLib"), library);
    EXPECT_EQ(ClassText(kInterfaceKey + L"\\ProxyStubClsid32"),
              winapi::Utf8(kTypeLibraryMarshaler));
    EXPECT_EQ(ClassText(kInterfaceKey + L"\\TypeLib"), library);
    EXPECT_EQ(ClassText(kInterfaceKey + L"\\TypeLib", L"Version"), "1.0");
    EXPECT_EQ(ClassText(kLibrary + L"\\1.0\\0\\win64"), base::Utf8FromPath(program_));
    CLSID found{};
    EXPECT_EQ(CLSIDFromProgID(L"NQP.CWizard", &found), S_OK);
    EXPECT_TRUE(IsEqualCLSID(found, platform::kWizardClassId));
}

TEST_F(RegistrationTest, WritesForTheUser) {
    platform::RegisterAutomation(program_);
    EXPECT_EQ(UserClassText(kWizardServer), Quoted(program_));
    EXPECT_EQ(UserClassText(L"NQP.CWizard\\CLSID"), winapi::Utf8(platform::kWizardClass));
}

TEST_F(RegistrationTest, TakesTheClassFromAnotherFolder) {
    platform::RegisterAutomation("C:\\old\\nqp.exe");
    EXPECT_EQ(ClassText(kWizardServer), "\"C:\\old\\nqp.exe\"");
    platform::RegisterAutomation(program_);
    EXPECT_EQ(ClassText(kWizardServer), Quoted(program_));
    EXPECT_EQ(ClassText(kLibrary + L"\\1.0\\0\\win64"), base::Utf8FromPath(program_));
}

TEST_F(RegistrationTest, WritesNothingWhenAllIsRight) {
    platform::RegisterAutomation(program_);
    RemoveUserClasses();
    ASSERT_EQ(ClassText(kWizardServer), Quoted(program_)) << "the system shows the user's part";
    platform::RegisterAutomation(program_);
    EXPECT_EQ(UserClassText(kWizardServer), "none");
    EXPECT_EQ(UserClassText(L"NQP.CWizard\\CLSID"), "none");
}

TEST_F(RegistrationTest, BringsBackWhatIsDamaged) {
    for (const std::wstring& key :
         {kWizardServer, std::wstring(L"NQP.CWizard\\CLSID"), kInterfaceKey + L"\\TypeLib",
          kInterfaceKey + L"\\ProxyStubClsid32", kLibrary + L"\\1.0\\0\\win64"}) {
        platform::RegisterAutomation(program_);
        const std::string right = ClassText(key);
        SetClassText(key, "damaged");
        platform::RegisterAutomation(program_);
        EXPECT_EQ(ClassText(key), right) << winapi::Utf8(key);
    }
}

TEST_F(RegistrationTest, TheSystemStartsTheProgramInItsFolder) {
    std::filesystem::copy_file(platform::ProgramFile(), program_);
    {
        const auto wizard = platform::AutomationWizards(program_).Create();
        wizard->init();
        EXPECT_EQ(wizard->Get_frwt_OutFilePath(), "init\n");
        EXPECT_EQ(ProcessesOf(program_).size(), 1u);
    }
    EXPECT_TRUE(WaitUntil([&] { return ProcessesOf(program_).empty(); }));
    EndProcessesOf(program_);
}

TEST_F(RegistrationTest, RegistersACompanionThatIsThere) {
    AddCompanion();
    platform::RegisterAutomation(program_);
    EXPECT_EQ(ClassText(kCompanionServer), Quoted(Companion()));
    EXPECT_EQ(ClassText(L"Framewright.FragmentJob\\CLSID"),
              winapi::Utf8(platform::kCompanionClass));
}

TEST_F(RegistrationTest, TakesTheCompanionOfItsOwnFolder) {
    AddCompanion();
    platform::RegisterAutomation(program_);
    SetClassText(kCompanionServer, "\"C:\\old\\Framewright.exe\"");
    platform::RegisterAutomation(program_);
    EXPECT_EQ(ClassText(kCompanionServer), Quoted(Companion()));
}

TEST_F(RegistrationTest, LeavesACompanionElsewhereWhenItHasNone) {
    platform::RegisterAutomation(program_);
    EXPECT_EQ(ClassText(kCompanionServer), "none");
    SetClassText(kCompanionServer, "\"C:\\other\\Framewright.exe\"");
    platform::RegisterAutomation(program_);
    EXPECT_EQ(ClassText(kCompanionServer), "\"C:\\other\\Framewright.exe\"");
}

}  // namespace
}  // namespace nqp::test
