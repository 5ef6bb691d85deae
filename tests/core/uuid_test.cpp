#include "core/uuid.h"

#include <gmock/gmock.h>

#include <mutex>
#include <thread>
#include <unordered_set>
#include <vector>

namespace orlix {
namespace {

TEST(Uuid, randomOnesDifferAndCarryVersionAndVariant) {
    std::unordered_set<Uuid> ids;
    std::array<std::uint8_t, 16> seenSet{};
    std::array<std::uint8_t, 16> seenClear{};
    for (int i = 0; i < 10000; ++i) {
        const Uuid id = Uuid::random();
        EXPECT_EQ(id.bytes[6] & 0xF0, 0x40);
        EXPECT_EQ(id.bytes[8] & 0xC0, 0x80);
        for (std::size_t byte = 0; byte < 16; ++byte) {
            seenSet[byte] = static_cast<std::uint8_t>(seenSet[byte] | id.bytes[byte]);
            seenClear[byte] = static_cast<std::uint8_t>(seenClear[byte] | ~id.bytes[byte]);
        }
        ids.insert(id);
    }
    EXPECT_EQ(ids.size(), 10000U);
    // Every other bit is random: it was seen both set and clear.
    for (std::size_t byte = 0; byte < 16; ++byte) {
        EXPECT_EQ(seenSet[byte], byte == 6 ? 0x4F : byte == 8 ? 0xBF : 0xFF) << byte;
        EXPECT_EQ(seenClear[byte], byte == 6 ? 0xBF : byte == 8 ? 0x7F : 0xFF) << byte;
    }
}

TEST(Uuid, threadsDrawDifferentOnes) {
    std::mutex mutex;
    std::unordered_set<Uuid> ids;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int j = 0; j < 500; ++j) {
                const Uuid id = Uuid::random();
                const std::lock_guard lock(mutex);
                ids.insert(id);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(ids.size(), 2000U);
}

TEST(Uuid, textIsUpperCaseInFiveGroups) {
    const Uuid id{
        {0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x46, 0x77, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF}};
    EXPECT_EQ(id.text(), "00112233-4455-4677-8899-AABBCCDDEEFF");
    EXPECT_EQ(Uuid::fromText("00112233-4455-4677-8899-AABBCCDDEEFF"), id);
    EXPECT_EQ(Uuid::fromText("00112233-4455-4677-8899-aabbccddeeff"), id);
    const Uuid random = Uuid::random();
    EXPECT_EQ(Uuid::fromText(random.text()), random);
}

TEST(Uuid, otherTextIsRefused) {
    for (const char* text :
         {"", "00112233-4455-4677-8899-AABBCCDDEEF", "00112233-4455-4677-8899-AABBCCDDEEFF0",
          "{00112233-4455-4677-8899-AABBCCDDEEFF}", "0011223344554677-8899-AABBCCDDEEFF-",
          "00112233-4455-4677-8899-AABBCCDDEEFG", "00112233_4455-4677-8899-AABBCCDDEEFF",
          "00112233-4455-4677-8899 AABBCCDDEEFF", "00112233445546778899AABBCCDDEEFF"}) {
        EXPECT_EQ(Uuid::fromText(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace orlix
