#include "engine/engine_log.h"

#include <gtest/gtest.h>

namespace orlix {
namespace {

QStringList numbered(int first, int last) {
    QStringList texts;
    for (int i = first; i <= last; ++i)
        texts.append(QStringLiteral("< %1").arg(i));
    return texts;
}

void receive(EngineLog& log, int first, int last) {
    for (int i = first; i <= last; ++i)
        log.appendReceived(std::to_string(i));
}

TEST(EngineLog, keepsSentAndReceivedEntriesInOrder) {
    EngineLog log;
    EXPECT_TRUE(log.lines().isEmpty());
    log.append(QStringLiteral("> uci"));
    log.appendReceived("id name Größe");
    EXPECT_EQ(log.lines(), QStringList({QStringLiteral("> uci"), QStringLiteral("< id name Größe")}));
    log.append(QStringLiteral("> go"));
    EXPECT_EQ(log.lines().size(), 3);
    EXPECT_EQ(log.lines().last(), QStringLiteral("> go"));
}

TEST(EngineLog, keepsAReceivedNul) {
    EngineLog log;
    log.appendReceived(std::string("a\0b", 3));
    EXPECT_EQ(log.lines().first(), QString::fromUtf8("< a\0b", 5));
}

TEST(EngineLog, aFullLogDropsFiftyBeforeTheNextEntry) {
    EngineLog log;
    receive(log, 1, 301);
    EXPECT_EQ(log.lines(), numbered(1, 301));
    receive(log, 302, 302);
    EXPECT_EQ(log.lines(), numbered(51, 302));
    EXPECT_EQ(log.lines().size(), 252);
    receive(log, 303, 351);
    EXPECT_EQ(log.lines(), numbered(51, 351));
    receive(log, 352, 352);
    EXPECT_EQ(log.lines(), numbered(101, 352));
}

TEST(EngineLog, isTheSameWhetherOrNotSomebodyLooks) {
    EngineLog looked;
    EngineLog alone;
    QStringList plain;
    for (int i = 1; i <= 2000; ++i) {
        const QString sent = QStringLiteral("> %1").arg(i);
        if (plain.size() >= 301) plain.erase(plain.begin(), plain.begin() + 50);
        if (i % 7 == 0) {
            looked.append(sent);
            alone.append(sent);
            plain.append(sent);
        } else {
            receive(looked, i, i);
            receive(alone, i, i);
            plain.append(QStringLiteral("< %1").arg(i));
        }
        ASSERT_EQ(looked.lines(), plain) << i;
    }
    EXPECT_EQ(alone.lines(), plain);
}

}  // namespace
}  // namespace orlix
