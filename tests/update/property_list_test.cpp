#include "update/property_list.h"

#include <gmock/gmock.h>

#include <QStringList>
#include <string>
#include <vector>

#include "update/property_list_limits.h"

namespace orlix {
namespace {

QByteArray xml(const QByteArray& content) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + content + "</plist>\n";
}

// Puts binary lists together object by object.
class BinaryList {
  public:
    /// With references of two bytes each.
    BinaryList& array(const std::vector<int>& references) { return container(0xA0, references); }
    /// First all keys, then all values.
    BinaryList& dictionary(const std::vector<int>& references) {
        return container(0xD0, references, references.size() / 2);
    }
    BinaryList& text(const QByteArray& ascii) {
        return add(QByteArray(1, static_cast<char>(0x50 + ascii.size())) + ascii);
    }
    BinaryList& longText(const QByteArray& ascii) {
        return add(QByteArray("\x5f\x12") + number(static_cast<quint64>(ascii.size()), 4) + ascii);
    }
    BinaryList& utf16(const QString& string) {
        QByteArray bytes(1, static_cast<char>(0x60 + string.size()));
        for (const QChar c : string)
            bytes += number(c.unicode(), 2);
        return add(bytes);
    }
    BinaryList& add(const QByteArray& object) {
        offsets_.push_back(8 + objects_.size());
        objects_ += object;
        return *this;
    }
    QByteArray bytes(int top = 0) const {
        QByteArray list = "bplist00" + objects_;
        for (const qsizetype offset : offsets_)
            list += number(static_cast<quint64>(offset), 4);
        return list + QByteArray(6, 0) + number(4, 1) + number(2, 1) + number(offsets_.size(), 8) +
               number(static_cast<quint64>(top), 8) + number(8 + static_cast<quint64>(objects_.size()), 8);
    }

    static QByteArray number(quint64 value, int width) {
        QByteArray bytes;
        for (int shift = 8 * (width - 1); shift >= 0; shift -= 8)
            bytes += static_cast<char>(value >> shift);
        return bytes;
    }

  private:
    BinaryList& container(int kind, const std::vector<int>& references) {
        return container(kind, references, references.size());
    }
    BinaryList& container(int kind, const std::vector<int>& references, std::size_t count) {
        QByteArray bytes(1, static_cast<char>(kind + static_cast<int>(count)));
        for (const int reference : references)
            bytes += number(static_cast<quint64>(reference), 2);
        return add(bytes);
    }

    QByteArray objects_;
    std::vector<qsizetype> offsets_;
};

const QVariantMap expected{
    {QStringLiteral("a"), QStringLiteral("één")},
    {QStringLiteral("b"), QVariantList{QStringLiteral("x"), QVariantMap{{QStringLiteral("c"), QString()}}}},
};

TEST(PropertyList, readsXml) {
    EXPECT_EQ(
        readPropertyList(xml("<dict><key>a</key><string>één</string><key>b</key><array><string>x</string>"
                             "<dict><key>c</key><string></string></dict></array></dict>")),
        expected);
}

TEST(PropertyList, readsBinary) {
    BinaryList list;
    list.dictionary({1, 3, 2, 4}).text("a").utf16(QStringLiteral("één")).text("b").array({5, 6});
    list.text("x").dictionary({7, 8}).text("c").text("");
    EXPECT_EQ(readPropertyList(list.bytes()), expected);
}

TEST(PropertyList, valuesOfOtherTypesAreNull) {
    const auto list =
        readPropertyList(xml("<dict><key>i</key><integer>7</integer><key>t</key><true/><key>r</key>"
                             "<real>1.5</real><key>d</key><data>YQ==</data></dict>"));
    ASSERT_TRUE(list);
    EXPECT_EQ(list->keys(), (QStringList{QStringLiteral("d"), QStringLiteral("i"), QStringLiteral("r"),
                                         QStringLiteral("t")}));
    for (const QVariant& value : *list)
        EXPECT_FALSE(value.isValid());
}

TEST(PropertyList, whatIsNoDictionaryIsNothing) {
    for (const QByteArray& bytes :
         {QByteArray(), QByteArray("disk4 is attached, have fun\n"), xml("<array/>"),
          xml("<string>a</string>"), xml(""), QByteArray("<dict>"), QByteArray("bplist00"),
          QByteArray("{\"a\": \"b\"}"), BinaryList().array({}).bytes(), BinaryList().text("a").bytes(),
          QByteArray("\0\0\0\0", 4)}) {
        SCOPED_TRACE(bytes.toStdString());
        EXPECT_EQ(readPropertyList(bytes), std::nullopt);
    }
}

TEST(PropertyList, aListThatIsTooLongIsNothing) {
    const QByteArray list = xml("<dict><key>a</key><string>b</string></dict>");
    const QByteArray fitting = list + QByteArray(largestPropertyList - list.size(), '\n');
    EXPECT_NE(readPropertyList(fitting), std::nullopt);
    EXPECT_EQ(readPropertyList(fitting + '\n'), std::nullopt);
}

QByteArray nestedXml(int levels, const QByteArray& between = {}) {
    QByteArray content = "<dict><key>a</key>" + between;
    for (int level = 1; level < levels; ++level)
        content += "<array>" + between;
    for (int level = 1; level < levels; ++level)
        content += "</array>";
    return xml(content + "</dict>");
}

TEST(PropertyList, xmlNestsSixtyFourLevelsDeepAtMost) {
    EXPECT_NE(readPropertyList(nestedXml(64)), std::nullopt);
    EXPECT_EQ(readPropertyList(nestedXml(65)), std::nullopt);
    EXPECT_FALSE(isHarmlessPropertyList(nestedXml(100000)));
    EXPECT_FALSE(isHarmlessPropertyList(nestedXml(65, "<!-- </array> -->"))) << "comments do not count";
    EXPECT_FALSE(isHarmlessPropertyList(nestedXml(65, "<![CDATA[</array>]]>"))) << "nor does quoted text";
    QByteArray wide = "<dict><key>a</key><array>";
    for (int i = 0; i < 1000; ++i)
        wide += "<array/><dict></dict>";
    EXPECT_NE(readPropertyList(xml(wide + "</array></dict>")), std::nullopt) << "width is no depth";
}

QByteArray nestedBinary(int levels) {
    BinaryList list;
    list.dictionary({levels, 1});
    for (int level = 1; level < levels - 1; ++level)
        list.array({level + 1});
    list.array({});
    return list.text("a").bytes();
}

TEST(PropertyList, binaryListsNestSixtyFourLevelsDeepAtMost) {
    EXPECT_NE(readPropertyList(nestedBinary(64)), std::nullopt);
    EXPECT_EQ(readPropertyList(nestedBinary(65)), std::nullopt);
    EXPECT_FALSE(isHarmlessPropertyList(nestedBinary(60000)));
}

TEST(PropertyList, aListThatUnfoldsToFarMoreThanItsSizeIsRefused) {
    BinaryList list;  // thirty levels, each twice the one below: a billion values
    for (int level = 0; level < 30; ++level)
        list.array({level + 1, level + 1});
    list.array({});
    EXPECT_FALSE(isHarmlessPropertyList(list.bytes()));

    BinaryList texts;  // a thousand times the same long text
    texts.array(std::vector<int>(14, 1)).array(std::vector<int>(14, 2)).array(std::vector<int>(14, 3));
    texts.longText(QByteArray(100000, 'x'));
    EXPECT_FALSE(isHarmlessPropertyList(texts.bytes()));
}

TEST(PropertyList, aListThatHoldsItselfIsRefused) {
    EXPECT_FALSE(isHarmlessPropertyList(BinaryList().array({0}).bytes()));
    EXPECT_FALSE(isHarmlessPropertyList(BinaryList().array({1}).array({0}).bytes()));
}

TEST(PropertyList, brokenBinaryListsAreRefused) {
    const QByteArray good = BinaryList().dictionary({1, 2}).text("a").text("b").bytes();
    ASSERT_TRUE(isHarmlessPropertyList(good));
    const auto changed = [&](qsizetype fromEnd, char value) {
        QByteArray bad = good;
        bad[bad.size() - fromEnd] = value;
        return bad;
    };
    EXPECT_FALSE(isHarmlessPropertyList(good.left(20))) << "no trailer";
    EXPECT_FALSE(isHarmlessPropertyList(changed(26, 0))) << "offsets of no bytes";
    EXPECT_FALSE(isHarmlessPropertyList(changed(26, 9))) << "offsets of nine bytes";
    EXPECT_FALSE(isHarmlessPropertyList(changed(25, 0))) << "references of no bytes";
    EXPECT_FALSE(isHarmlessPropertyList(changed(24, 1))) << "more objects than bytes";
    EXPECT_FALSE(isHarmlessPropertyList(changed(9, 3))) << "the top is none of the objects";
    EXPECT_FALSE(isHarmlessPropertyList(changed(1, 127))) << "an offset table behind the end";
    EXPECT_FALSE(isHarmlessPropertyList(changed(8, 127))) << "an offset table far away";
    EXPECT_FALSE(isHarmlessPropertyList(BinaryList().array({1}).bytes())) << "a reference to nothing";
    EXPECT_FALSE(isHarmlessPropertyList(BinaryList().add("\x70").bytes())) << "an unknown kind";
    EXPECT_FALSE(isHarmlessPropertyList(BinaryList().add("\x5f\x13\xff\xff\xff\xff\xff\xff\xff\xff").bytes()))
        << "a text longer than the list";
    EXPECT_FALSE(
        isHarmlessPropertyList(BinaryList().add(QByteArray("\xdf\x13\x80\0\0\0\0\0\0\0", 10)).bytes()));
    EXPECT_FALSE(isHarmlessPropertyList(BinaryList().add("\x5f\x22zzzz").bytes())) << "a length that is none";
}

}  // namespace
}  // namespace orlix
