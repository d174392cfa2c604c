#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include <kelcore/Exceptions.hpp>
#include <kelcore/JSON.hpp>

using kelcore::JSONValue;

TEST(KelcoreJSON, ParsesWellFormedTextAndYieldsNullOtherwise) {
    EXPECT_TRUE(kelcore::JSONParse(" [1, 2] ")->is_array());
    EXPECT_EQ(kelcore::GetJSONUTF8String(*kelcore::JSONParse(R"({ "z" : 1, "a" : [true, null] })")),
              R"({"z":1,"a":[true,null]})");
    for (const char* bad : {"", "   ", "{", "{\"a\":}", "not json", "{\"a\":1} trailing", "\"\xFF\""}) {
        SCOPED_TRACE(bad);
        EXPECT_EQ(kelcore::JSONParse(bad), nullptr);
    }
}

TEST(KelcoreJSON, WritesMembersInTheOrderTheyWereAdded) {
    JSONValue object;
    EXPECT_EQ(kelcore::GetJSONUTF8String(JSONValue::object()), "{}");
    for (const char* name : {"name", "payload", "color"}) kelcore::AddToObject(object, name, name, false);
    kelcore::AddToObject(object, "index", -3, false);
    kelcore::AddToObject(object, "name", "Replaced", false);
    kelcore::AddToObject(object, "color", 1, true);  // kept
    EXPECT_EQ(kelcore::GetJSONUTF8String(object), R"({"name":"Replaced","payload":"payload","color":"color","index":-3})");
    EXPECT_EQ(kelcore::GetJSONUTF8String(JSONValue("bad \xFF byte")), "\"bad \xEF\xBF\xBD byte\"");

    JSONValue array = JSONValue::array();
    EXPECT_THROW(kelcore::AddToObject(array, "a", 1, false), std::invalid_argument);
}

TEST(KelcoreJSON, ReadsMembersAndReportsMissingOrMistypedOnes) {
    const kelcore::JSONValuePtr object =
        kelcore::JSONParse(R"({"name":"Tag","color":4294967295,"index":-2147483648,"big":2147483648,"real":1.0})");
    EXPECT_FALSE(kelcore::ObjectHasProperty(*object, "Name"));
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

    for (const char* text : {"[\"name\"]", "\"name\"", "null"}) {  // non-objects have no members
        EXPECT_FALSE(kelcore::ObjectHasProperty(*kelcore::JSONParse(text), "name"));
        EXPECT_THROW(kelcore::GetVariantInObject(*kelcore::JSONParse(text), "name"), kelcore::missing_key_exception);
    }
}
