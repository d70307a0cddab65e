#include "vireo/textures/GLTextureSettings.h"

#include <gmock/gmock.h>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "tavo/base/objects/Card32.h"
#include "tavo/base/objects/Card32ClassProperty.h"
#include "tavo/base/objects/InputObjectStream.h"
#include "tavo/base/objects/MetaClass.h"
#include "tavo/base/objects/OutputObjectStream.h"
#include "tavo/base/objects/PException.h"
#include "tavo/base/objects/Persistent.h"

namespace tavo {
namespace {

using testing::ElementsAre;

std::vector<Card32> valuesOf(const GLTextureSettings& settings)
{
    return {settings.m_MinFilter, settings.m_MagFilter, settings.m_MipmapFilter, settings.m_WrapS, settings.m_WrapT,
        settings.m_WrapR};
}

// Settings in which no two fields are alike.
GLTextureSettings makeDistinctSettings()
{
    GLTextureSettings settings;
    settings.m_MinFilter = 11;
    settings.m_MagFilter = 12;
    settings.m_MipmapFilter = 13;
    settings.m_WrapS = 14;
    settings.m_WrapT = 15;
    settings.m_WrapR = 16;
    return settings;
}

TEST(GLTextureSettingsTest, StartsLinearAndRepeating)
{
    EXPECT_THAT(valuesOf(GLTextureSettings()), ElementsAre(1, 1, 1, 1, 1, 1));
}

TEST(GLTextureSettingsTest, HasItsOwnSmallNumbers)
{
    EXPECT_EQ(GLTextureSettings::FILTER_LINEAR, 1u);
    EXPECT_EQ(GLTextureSettings::FILTER_NEAREST, 2u);
    EXPECT_EQ(GLTextureSettings::WRAP_REPEAT, 1u);
    EXPECT_EQ(GLTextureSettings::WRAP_CLAMP, 2u);
    EXPECT_EQ(GLTextureSettings::WRAP_CLAMP_TO_EDGE, 3u);
    EXPECT_EQ(GLTextureSettings::WRAP_CLAMP_TO_BORDER, 4u);
}

TEST(GLTextureSettingsTest, IsCopiedFieldByField)
{
    const GLTextureSettings settings = makeDistinctSettings();
    EXPECT_THAT(valuesOf(settings), ElementsAre(11, 12, 13, 14, 15, 16));
    GLTextureSettings assigned;
    assigned = settings;
    EXPECT_THAT(valuesOf(assigned), ElementsAre(11, 12, 13, 14, 15, 16));
}

TEST(GLTextureSettingsTest, NamesItsFilters)
{
    EXPECT_EQ(GLTextureSettings::getFilterText(1), "linear");
    EXPECT_EQ(GLTextureSettings::getFilterText(2), "nearest");
    EXPECT_EQ(GLTextureSettings::getFilterText(0), "unkown");
    EXPECT_EQ(GLTextureSettings::getFilterText(3), "unkown");
    EXPECT_EQ(GLTextureSettings::getFilterText(0xFFFFFFFF), "unkown");
}

TEST(GLTextureSettingsTest, NamesItsWrapModes)
{
    EXPECT_EQ(GLTextureSettings::getWrapText(1), "repeat");
    EXPECT_EQ(GLTextureSettings::getWrapText(2), "clamp");
    EXPECT_EQ(GLTextureSettings::getWrapText(3), "clamp to edge");
    EXPECT_EQ(GLTextureSettings::getWrapText(4), "clamp to border");
    EXPECT_EQ(GLTextureSettings::getWrapText(0), "unkown");
    EXPECT_EQ(GLTextureSettings::getWrapText(5), "unkown");
}

// Registers the class for one test, and leaves it as if it had never been used.
class GLTextureSettingsClassTest : public testing::Test
{
protected:
    GLTextureSettingsClassTest() { GLTextureSettings::init(Persistent::getClass()); }

    ~GLTextureSettingsClassTest() override
    {
        GLTextureSettings::shutdown();
        GLTextureSettings::GLTextureSettingsMetaClass = nullptr;
    }
};

TEST(GLTextureSettingsRecordTest, IsMadeWhenItIsFirstAskedFor)
{
    ASSERT_EQ(GLTextureSettings::GLTextureSettingsMetaClass, nullptr);
    const MetaClass* const record = GLTextureSettings::getClass();
    EXPECT_EQ(GLTextureSettings::GLTextureSettingsMetaClass, record);
    EXPECT_EQ(GLTextureSettings::getClass(), record);
    EXPECT_EQ(GLTextureSettings().getInstanceClass(), record);

    EXPECT_STREQ(record->getName(), "GLTextureSettings");
    EXPECT_STREQ(record->getDescription(), "no description.");
    EXPECT_EQ(record->getInstanceSize(), sizeof(GLTextureSettings));
    EXPECT_EQ(record->getParent(), nullptr);
    EXPECT_TRUE(record->getProperties().empty());

    GLTextureSettings::shutdown();
    EXPECT_EQ(GLTextureSettings::GLTextureSettingsMetaClass, record) << "deliberately not reset";
    EXPECT_EQ(MetaClass::findClass("GLTextureSettings"), nullptr);
    GLTextureSettings::GLTextureSettingsMetaClass = nullptr;
    GLTextureSettings::shutdown();
}

TEST_F(GLTextureSettingsClassTest, IsRegisteredUnderItsParent)
{
    const MetaClass* const record = GLTextureSettings::getClass();
    EXPECT_EQ(MetaClass::findClass("GLTextureSettings"), record);
    EXPECT_EQ(record->getParent(), Persistent::getClass());
    EXPECT_EQ(record->getVersion(), 1000u);
}

TEST_F(GLTextureSettingsClassTest, MakesInstancesWithDefaults)
{
    const std::unique_ptr<Object> instance(GLTextureSettings::getClass()->newInstance());
    const auto* const settings = dynamic_cast<const GLTextureSettings*>(instance.get());
    ASSERT_NE(settings, nullptr);
    EXPECT_THAT(valuesOf(*settings), ElementsAre(1, 1, 1, 1, 1, 1));
}

TEST_F(GLTextureSettingsClassTest, HasAPropertyForEachFieldInOrder)
{
    GLTextureSettings::init(Persistent::getClass()); // a second time, which doubles nothing

    const GLTextureSettings settings = makeDistinctSettings();
    std::vector<std::string> properties;
    for (const auto& property : GLTextureSettings::getClass()->getProperties()) {
        EXPECT_NE(dynamic_cast<const Card32ClassProperty*>(property.get()), nullptr);
        EXPECT_EQ(property->getVersion(), 1000u);
        EXPECT_EQ(property->getFlags(), 0u);
        properties.push_back(property->getName() + " = " + property->getText(settings));
    }
    EXPECT_THAT(properties, ElementsAre("m_MinFilter = 11", "m_MagFilter = 12", "m_MipmapFilter = 13", "m_WrapS = 14",
                                "m_WrapT = 15", "m_WrapR = 16"));
}

TEST_F(GLTextureSettingsClassTest, ShowsPlainNumbers)
{
    for (const auto& property : GLTextureSettings::getClass()->getProperties())
        EXPECT_EQ(property->getText(GLTextureSettings()), "1");
}

TEST_F(GLTextureSettingsClassTest, AssignsComparesAndHashesEveryField)
{
    const GLTextureSettings settings = makeDistinctSettings();
    GLTextureSettings other;
    EXPECT_FALSE(other.equal(&settings));
    other.assign(&settings, nullptr);
    EXPECT_THAT(valuesOf(other), ElementsAre(11, 12, 13, 14, 15, 16));
    EXPECT_TRUE(other.equal(&settings));
    EXPECT_EQ(other.getFieldsHashValue(), settings.getFieldsHashValue());

    std::set<Card32> hashes = {settings.getFieldsHashValue()};
    for (const auto field :
        {&GLTextureSettings::m_MinFilter, &GLTextureSettings::m_MagFilter, &GLTextureSettings::m_MipmapFilter,
            &GLTextureSettings::m_WrapS, &GLTextureSettings::m_WrapT, &GLTextureSettings::m_WrapR}) {
        GLTextureSettings changed = settings;
        changed.*field = 17;
        EXPECT_FALSE(changed.equal(&settings));
        hashes.insert(changed.getFieldsHashValue());
    }
    EXPECT_EQ(hashes.size(), 7u);
}

TEST_F(GLTextureSettingsClassTest, CopiesEveryField)
{
    const GLTextureSettings settings = makeDistinctSettings();
    const std::unique_ptr<Object> copy(settings.copy(nullptr));
    EXPECT_THAT(valuesOf(dynamic_cast<const GLTextureSettings&>(*copy)), ElementsAre(11, 12, 13, 14, 15, 16));
}

TEST_F(GLTextureSettingsClassTest, IsWrittenAndReadAsText)
{
    OutputObjectStream output;
    makeDistinctSettings().write(&output);
    EXPECT_EQ(output.getText().toStdString(), R"({
    "format": "tavo objects",
    "objects": [
        {
            "class": "GLTextureSettings",
            "parts": [
                {
                    "class": "GLTextureSettings",
                    "properties": {
                        "m_MagFilter": 12,
                        "m_MinFilter": 11,
                        "m_MipmapFilter": 13,
                        "m_WrapR": 16,
                        "m_WrapS": 14,
                        "m_WrapT": 15
                    },
                    "version": 1000
                }
            ]
        }
    ],
    "version": 1
}
)");

    InputObjectStream input(output.getText());
    GLTextureSettings settings;
    settings.read(&input);
    EXPECT_THAT(valuesOf(settings), ElementsAre(11, 12, 13, 14, 15, 16));

    InputObjectStream sameInput(output.getText());
    EXPECT_TRUE(sameInput.readObject()->equal(&settings));
}

TEST_F(GLTextureSettingsClassTest, IsReadFromTextThatAPersonEdited)
{
    InputObjectStream input("\xEF\xBB\xBF"
                            R"({ "version": 1, "format": "tavo objects", "objects": [
        {"class": "GLTextureSettings",
         "note": "sharp, and clamped along T",
         "parts": [ {"class": "GLTextureSettings", "properties":
             { "m_WrapT":3,  "m_MinFilter" : 2.0, "m_Anisotropy": 8 }} ]}
    ]})");
    GLTextureSettings settings;
    settings.read(&input);
    EXPECT_THAT(valuesOf(settings), ElementsAre(2, 1, 1, 1, 3, 1));
}

TEST_F(GLTextureSettingsClassTest, StaysAsItIsWhenTheTextIsWrong)
{
    InputObjectStream input(R"({"format": "tavo objects", "version": 1, "objects": [
        {"class": "GLTextureSettings", "parts": [{"class": "GLTextureSettings", "properties":
            {"m_MinFilter": 2, "m_WrapS": 3, "m_WrapR": "repeat"}}]}]})",
        "settings.json");
    GLTextureSettings settings = makeDistinctSettings();
    try {
        settings.read(&input);
        FAIL() << "nothing was thrown";
    } catch (const PException& error) {
        EXPECT_EQ(error.getMessage(), "InputObjectStream::readObject() - settings.json, object 1 of 1: "
                                      "GLTextureSettings::m_WrapR: \"repeat\" is not a number");
    }
    EXPECT_THAT(valuesOf(settings), ElementsAre(11, 12, 13, 14, 15, 16));
}

TEST_F(GLTextureSettingsClassTest, HasAnInitMetaClassThatDoesNothing)
{
    const MetaClass* const record = GLTextureSettings::getClass();
    GLTextureSettings::initMetaClass();
    EXPECT_EQ(GLTextureSettings::getClass(), record);
}

} // namespace
} // namespace tavo
