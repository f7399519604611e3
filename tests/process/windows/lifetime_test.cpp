// Who makes the section, who finds it, and what is left when they go or are killed.
#include "tests/process/windows/process_fixture.hpp"

#include <memory>
#include <vector>

namespace tallowmere::test {
namespace {

class SectionLifetime : public WindowsProcesses {
  protected:
    /// What the next creator reads from the user's settings and files.
    void provide(double variable, const std::string& channelName) {
        settings_->set(L"Sys_v3", number(variable));
        writeConfigFile("channels.xml", R"(<channels><channel id="172" user=")" + channelName + R"("/></channels>)");
    }
};

TEST_F(SectionLifetime, WhatOneClientWritesAnotherReadsAtOnce) {
    ReadyClient writer;
    ReadyClient reader;
    EXPECT_EQ(reader.ask("get 1 0"), "0 -1 1");
    EXPECT_EQ(writer.ask("set 1 6.5 0"), "1");
    EXPECT_EQ(reader.ask("get 1 0"), "1 6.5 1");
    EXPECT_EQ(reader.ask("rename 3 Vane"), "done");
    EXPECT_EQ(writer.ask("name 175"), "Vane");
}

TEST_F(SectionLifetime, TheCreatorReadsSettingsAndFilesAndAnOpenerDoesNot) {
    provide(2.5, "First");
    ReadyClient creator;
    EXPECT_EQ(creator.ask("variable 3"), "1 2.5");
    EXPECT_EQ(creator.ask("name 172"), "First");
    provide(3.5, "Second");
    ReadyClient opener;
    EXPECT_EQ(opener.ask("variable 3"), "1 2.5");
    EXPECT_EQ(opener.ask("name 172"), "First");
}

TEST_F(SectionLifetime, TheSectionStaysAfterItsCreatorHasGone) {
    ReadyClient creator;
    ReadyClient opener;
    EXPECT_EQ(creator.ask("set 1 6.5 0"), "1");
    EXPECT_EQ(creator.finish(), 0u);
    EXPECT_EQ(opener.ask("get 1 0"), "1 6.5 1");
}

TEST_F(SectionLifetime, AfterTheLastOneTheNextMakesTheSectionAnew) {
    provide(2.5, "First");
    {
        ReadyClient one;
        ReadyClient two;
        EXPECT_EQ(one.ask("set 1 6.5 0"), "1");
        EXPECT_EQ(one.finish(), 0u);
        EXPECT_EQ(two.finish(), 0u);
    }
    EXPECT_FALSE(SectionView::sectionIsThere());
    provide(3.5, "Second");
    ReadyClient next;
    EXPECT_EQ(next.ask("get 1 0"), "0 -1 1");
    EXPECT_EQ(next.ask("variable 3"), "1 3.5");
    EXPECT_EQ(next.ask("name 172"), "Second");
}

TEST_F(SectionLifetime, UnloadingTheLibraryLetsTheSectionGoWhileTheProcessLivesOn) {
    ReadyClient client;
    EXPECT_TRUE(SectionView::sectionIsThere());
    EXPECT_EQ(client.ask("unload"), "1");
    EXPECT_FALSE(SectionView::sectionIsThere());
    EXPECT_EQ(client.ask("quit"), "none");
    EXPECT_EQ(client.finish(), 0u);
}

TEST_F(SectionLifetime, TheSectionOutlivesAKilledCreatorWhileAnotherHoldsIt) {
    ReadyClient creator;
    EXPECT_EQ(creator.ask("set 1 6.5 0"), "1");
    ReadyClient opener;
    creator.kill();
    EXPECT_EQ(opener.ask("get 1 0"), "1 6.5 1");
    EXPECT_EQ(opener.ask("set 2 30 0"), "1");
    ReadyClient third;
    EXPECT_EQ(third.ask("get 1 0"), "1 6.5 1");
    EXPECT_EQ(third.ask("get 2 0"), "1 30 2");
}

TEST_F(SectionLifetime, AfterAKilledLastOneTheNextMakesTheSectionAnew) {
    provide(2.5, "First");
    ReadyClient lone;
    EXPECT_EQ(lone.ask("set 1 6.5 0"), "1");
    lone.kill();
    provide(3.5, "Second");
    ReadyClient next;
    EXPECT_EQ(next.ask("get 1 0"), "0 -1 1");
    EXPECT_EQ(next.ask("variable 3"), "1 3.5");
    EXPECT_EQ(next.ask("name 172"), "Second");
    EXPECT_EQ(next.ask("set 1 5.5 0"), "1");
}

TEST_F(SectionLifetime, AProgramThatOnlyLooksHoldsTheSectionToo) {
    auto client = std::make_unique<ReadyClient>();
    EXPECT_EQ(client->ask("set 1 6.5 0"), "1");
    const SectionView view;
    client.reset();
    EXPECT_EQ(view.area().fullBlocks[0].current[1].payload.number, 6.5);
    ReadyClient next;
    EXPECT_EQ(next.ask("get 1 0"), "1 6.5 1");
}

TEST_F(SectionLifetime, ManyClientsShareOneSection) {
    std::vector<std::unique_ptr<ReadyClient>> clients;
    for (int i = 0; i < 6; ++i) clients.push_back(std::make_unique<ReadyClient>());
    for (std::size_t i = 0; i < clients.size(); ++i)
        EXPECT_EQ(clients[i]->ask("set " + std::to_string(172 + i) + " " + std::to_string(i) + " 0"), "1");
    for (std::size_t i = 0; i < clients.size(); ++i) {
        const std::string channel = std::to_string(172 + i);
        EXPECT_EQ(clients[clients.size() - 1 - i]->ask("get " + channel + " 0"),
                  "1 " + std::to_string(i) + " " + channel);
    }
}

} // namespace
} // namespace tallowmere::test
