#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include <kelcore/Exceptions.hpp>
#include <kelcore/JSON.hpp>

using kelcore::JSONValue;

TEST(KelcoreJSON, ParsesWellFormedTextAndYieldsNullOtherwise) {
    ASSERT_NE(kelcore::JSONParse(R"({"name":"Tag"})"), nullptr);
    EXPECT_TRUE(kelcore::JSONParse(" [1, 2] ")->is_array());
    EXPECT_TRUE(kelcore::JSONParse("42")->is_number());
    for (const char* bad : {"", "   ", "{", "{\"a\":}", "not json", "{\"a\":1} trailing", "\"\xFF\""}) {
        SCOPED_TRACE(bad);
        EXPECT_EQ(kelcore::JSONParse(bad), nullptr);
    }
}

TEST(KelcoreJSON, WritesMembersInTheOrderTheyWereAdded) {
    JSONValue object;
    kelcore::AddToObject(object, "name", "Tag", false);
    kelcore::AddToObject(object, "payload", "p", false);
    kelcore::AddToObject(object, "color", 255, false);
    kelcore::AddToObject(object, "index", -3, false);
    EXPECT_EQ(kelcore::GetJSONUTF8String(object), R"({"name":"Tag","payload":"p","color":255,"index":-3})");

    kelcore::AddToObject(object, "name", "Replaced", false);
    kelcore::AddToObject(object, "color", 1, true);  // kept
    EXPECT_EQ(kelcore::GetJSONUTF8String(object), R"({"name":"Replaced","payload":"p","color":255,"index":-3})");

    EXPECT_EQ(kelcore::GetJSONUTF8String(*kelcore::JSONParse(R"({ "z" : 1, "a" : [true, null] })")),
              R"({"z":1,"a":[true,null]})");
    EXPECT_EQ(kelcore::GetJSONUTF8String(JSONValue::object()), "{}");
    EXPECT_EQ(kelcore::GetJSONUTF8String(JSONValue("bad \xFF byte")), "\"bad \xEF\xBF\xBD byte\"");
}

TEST(KelcoreJSON, AddingToANonObjectFails) {
    JSONValue array = JSONValue::array();
    EXPECT_THROW(kelcore::AddToObject(array, "a", 1, false), std::invalid_argument);
}

TEST(KelcoreJSON, ReadsMembersAndReportsMissingOnes) {
    const kelcore::JSONValuePtr object =
        kelcore::JSONParse(R"({"name":"Tag","color":4294967295,"index":-2147483648,"big":2147483648,"real":1.0})");
    ASSERT_NE(object, nullptr);

    EXPECT_TRUE(kelcore::ObjectHasProperty(*object, "name"));
    EXPECT_FALSE(kelcore::ObjectHasProperty(*object, "Name"));
    EXPECT_EQ(*kelcore::GetVariantInObject(*object, "name"), "Tag");
    EXPECT_EQ(kelcore::GetStringInObject(*object, "name"), "Tag");
    EXPECT_EQ(kelcore::GetInt32InObject(*object, "index"), INT32_MIN);

    for (const char* name : {"absent", "color", "big", "real", "name"}) {
        SCOPED_TRACE(name);
        try {
            static_cast<void>(kelcore::GetInt32InObject(*object, name));
            ADD_FAILURE() << "no exception";
        } catch (const kelcore::missing_key_exception& error) {
            EXPECT_STREQ(error.what(), name);
        }
    }
    EXPECT_THROW(kelcore::GetStringInObject(*object, "color"), kelcore::missing_key_exception);
    EXPECT_THROW(kelcore::GetVariantInObject(*object, "absent"), kelcore::missing_key_exception);
}

TEST(KelcoreJSON, NonObjectsHaveNoMembers) {
    for (const char* text : {"[\"name\"]", "\"name\"", "null", "7"}) {
        SCOPED_TRACE(text);
        const kelcore::JSONValuePtr value = kelcore::JSONParse(text);
        ASSERT_NE(value, nullptr);
        EXPECT_FALSE(kelcore::ObjectHasProperty(*value, "name"));
        EXPECT_THROW(kelcore::GetVariantInObject(*value, "name"), kelcore::missing_key_exception);
    }
}
