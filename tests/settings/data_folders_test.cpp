#include "settings/data_folders.hpp"
#include "tests/support/new_section.hpp"

namespace tallowmere::test {
namespace {

constexpr char16_t kDefaultFolder[] = u"C:\\ProgramData\\Tallowmere";

class DataFolders : public NewSection {
  protected:
    [[nodiscard]] bool isFolder(const std::u16string& path) const {
        const auto found = machine.files.find(path);
        return found != machine.files.end() && !found->second;
    }
};

// KEPT behaviour: the call that fills the section's field returns nothing.
TEST_F(DataFolders, FirstCallWithoutSubFolderReturnsEmptyAndFillsTheSection) {
    EXPECT_EQ(GetDataFolder(context, u""), u"");
    EXPECT_EQ(readText(area->dataFolder), kDefaultFolder);
    EXPECT_TRUE(isFolder(kDefaultFolder));
    EXPECT_EQ(GetDataFolder(context, u""), kDefaultFolder);
}

TEST_F(DataFolders, FirstCallWithSubFolderReturnsIt) {
    EXPECT_EQ(GetDataFolder(context, u"config"), u"C:\\ProgramData\\Tallowmere\\config");
    EXPECT_TRUE(isFolder(u"C:\\ProgramData\\Tallowmere\\config"));
    EXPECT_EQ(readText(area->dataFolder), kDefaultFolder);
}

TEST_F(DataFolders, WithoutSectionThereIsNone) {
    EXPECT_EQ(GetDataFolder(withoutSection, u""), u"");
    EXPECT_EQ(GetDataFolder(withoutSection, u"config"), u"");
    EXPECT_EQ(GetDatabasePath(withoutSection), u"");
    EXPECT_EQ(GetMarksPath(withoutSection), u"\\marks.xml");
    EXPECT_TRUE(machine.trace.empty()) << "the system was asked for " << machine.trace.front();
}

TEST_F(DataFolders, FolderInTheSectionIsNeitherTestedNorMade) {
    writeText(area->dataFolder, u"X:\\Absent");
    EXPECT_EQ(GetDataFolder(context, u""), u"X:\\Absent");
    EXPECT_TRUE(machine.trace.empty());
}

TEST_F(DataFolders, SubFolderOfMissingParentIsNamedAllTheSame) {
    writeText(area->dataFolder, u"C:\\Absent");
    EXPECT_EQ(GetDataFolder(context, u"config"), u"C:\\Absent\\config");
    EXPECT_FALSE(machine.files.contains(u"C:\\Absent\\config"));
    EXPECT_FALSE(machine.files.contains(u"C:\\Absent"));
}

TEST_F(DataFolders, ExistingSubFolderIsNotMadeAgain) {
    (void)GetDataFolder(context, u"config");
    machine.trace.clear();
    (void)GetDataFolder(context, u"config");
    EXPECT_EQ(machine.trace, std::vector<std::string>{"IsDirectory"});
}

TEST_F(DataFolders, UnknownProgramDataFolderLeavesRelativePaths) {
    machine.failAlways(Step::ProgramDataFolder);
    EXPECT_EQ(GetDataFolder(context, u""), u"");
    EXPECT_EQ(readText(area->dataFolder), u"");
    EXPECT_EQ(GetDataFolder(context, u"database"), u"\\database");
    EXPECT_EQ(GetDatabasePath(context), u"\\database\\Tallowmere.db");
    EXPECT_EQ(GetMarksPath(context), u"\\marks.xml");
}

TEST_F(DataFolders, FolderThatCannotBeMadeIsNotRemembered) {
    machine.failAlways(Step::MakeDirectory);
    EXPECT_EQ(GetDataFolder(context, u""), u"");
    EXPECT_EQ(readText(area->dataFolder), u"");
}

TEST_F(DataFolders, AnyObjectOfTheNameCountsAsTheFolder) {
    machine.addFile(kDefaultFolder, "a file");
    (void)GetDataFolder(context, u"");
    EXPECT_EQ(readText(area->dataFolder), kDefaultFolder);
}

TEST_F(DataFolders, DefaultFolderOf300CharactersIsStoredCut) {
    machine.programData = u"C:\\" + std::u16string(300, u'p');
    machine.files[machine.programData] = std::nullopt;
    (void)GetDataFolder(context, u"");
    EXPECT_EQ(readText(area->dataFolder), machine.programData.substr(0, 259));
}

TEST_F(DataFolders, LinuxPathsUseTheSlash) {
    machine.separator = u'/';
    machine.programData = u"/home/skipper/.local/share";
    machine.files[machine.programData] = std::nullopt;
    EXPECT_EQ(GetDatabasePath(context), u"/home/skipper/.local/share/Tallowmere/database/Tallowmere.db");
    EXPECT_EQ(GetMarksPath(context), u"/home/skipper/.local/share/Tallowmere/marks.xml");
    EXPECT_EQ(dataFile(context, u"config", u"boats.xml"), u"/home/skipper/.local/share/Tallowmere/config/boats.xml");
}

TEST_F(DataFolders, UnterminatedPathsInTheSectionAreReadWithinTheirField) {
    std::fill(std::begin(area->dataFolder), std::end(area->dataFolder), u'd');
    std::fill(std::begin(area->databasePath), std::end(area->databasePath), u'b');
    EXPECT_EQ(GetDataFolder(context, u""), std::u16string(259, u'd'));
    EXPECT_EQ(GetDatabasePath(context), std::u16string(259, u'd') + u"\\database\\Tallowmere.db");
}

TEST_F(DataFolders, EveryFailingStepLeavesAPath) {
    for (int nth = 1; nth <= 8; ++nth) {
        area = makeArea();
        context.area = area.get();
        machine.failAnyOnce(nth);
        (void)GetDataFolder(context, u"");
        const std::u16string path = dataFile(context, u"config", u"boats.xml");
        EXPECT_TRUE(path.ends_with(u"\\config\\boats.xml")) << nth;
    }
}

class DatabasePath : public DataFolders {
  protected:
    void expectKept(const std::u16string& path) {
        writeText(area->databasePath, path);
        EXPECT_EQ(GetDatabasePath(context), path);
        EXPECT_EQ(readText(area->databasePath), path);
    }
    void expectDropped(const std::u16string& path) {
        writeText(area->databasePath, path);
        EXPECT_EQ(GetDatabasePath(context), u"C:\\ProgramData\\Tallowmere\\database\\Tallowmere.db");
        EXPECT_EQ(readText(area->databasePath), u"");
    }
};

TEST_F(DatabasePath, EmptyFieldGivesTheDefaultAndStaysEmpty) {
    EXPECT_EQ(GetDatabasePath(context), u"C:\\ProgramData\\Tallowmere\\database\\Tallowmere.db");
    EXPECT_EQ(readText(area->databasePath), u"");
    EXPECT_TRUE(isFolder(u"C:\\ProgramData\\Tallowmere\\database"));
}

TEST_F(DatabasePath, ExtensionDbIsKept) {
    expectKept(u"D:\\Race\\boat.db");
    expectKept(u"D:/Race/boat.db");
    expectKept(u"boat.db");
    expectKept(u"D:\\Race\\boat.old.db");
    expectKept(u"D:\\Race\\..db"); // the last dot is not the first character
}

TEST_F(DatabasePath, AnyOtherExtensionIsThrownAway) {
    expectDropped(u"D:\\Race\\boat.DB");
    expectDropped(u"D:\\Race\\boat.Db");
    expectDropped(u"D:\\Race\\boat.db3");
    expectDropped(u"D:\\Race\\boat.dbx");
    expectDropped(u"D:\\Race\\boat.d");
    expectDropped(u"D:\\Race\\boat.db.");
    expectDropped(u"D:\\Race\\boat");
}

TEST_F(DatabasePath, ComponentsWithoutAnExtensionAreThrownAway) {
    expectDropped(u"D:\\Race\\.db");
    expectDropped(u"D:\\Race\\.");
    expectDropped(u"D:\\Race\\..");
    expectDropped(u"D:\\Race.db\\");
    expectDropped(u"D:\\Race.db\\boat");
    expectDropped(u".db");
    expectDropped(u"C:.db");
}

TEST_F(DatabasePath, OnLinuxTheBackslashIsPartOfAName) {
    machine.separator = u'/';
    expectKept(u"/race/odd\\.db");
    expectKept(u"/race/a:.db");
}

class HostFolder : public DataFolders {
  protected:
    std::u16string of(std::u16string executable) {
        machine.hostExecutable = std::move(executable);
        return GetHostFolder(platform);
    }
};

TEST_F(HostFolder, IsDriveAndDirectoryWithTheSeparator) {
    EXPECT_EQ(of(u"C:\\Programs\\Nav\\nav.exe"), u"C:\\Programs\\Nav\\");
    EXPECT_EQ(of(u"C:\\nav.exe"), u"C:\\");
    EXPECT_EQ(of(u"C:/Programs/nav.exe"), u"C:/Programs/");
    EXPECT_EQ(of(u"\\\\server\\share\\nav.exe"), u"\\\\server\\share\\");
}

TEST_F(HostFolder, IsTheDriveAloneWithoutADirectory) {
    EXPECT_EQ(of(u"C:nav.exe"), u"C:");
}

TEST_F(HostFolder, IsEmptyWhenUnknown) {
    EXPECT_EQ(of(u"nav.exe"), u"");
    EXPECT_EQ(of(u""), u"");
    machine.failOnce(Step::HostExecutable);
    EXPECT_EQ(of(u"C:\\Programs\\Nav\\nav.exe"), u"");
}

TEST_F(HostFolder, DirectoryOf255CharactersIsTheLongest) {
    const std::u16string longest = u"\\" + std::u16string(253, u'n') + u"\\";
    EXPECT_EQ(of(u"C:" + longest + u"n"), u"C:" + longest);
    EXPECT_EQ(of(u"C:\\n" + longest.substr(1) + u"n"), u"");
}

TEST_F(HostFolder, OnLinuxEndsAtTheLastSlash) {
    machine.separator = u'/';
    EXPECT_EQ(of(u"/opt/nav/bin/nav"), u"/opt/nav/bin/");
    EXPECT_EQ(of(u"/opt/a:b\\nav"), u"/opt/");
}

TEST_F(HostFolder, DoesNotNeedASection) {
    EXPECT_EQ(GetHostFolder(withoutSection.platform), u"C:\\Programs\\Nav\\");
}

} // namespace
} // namespace tallowmere::test
