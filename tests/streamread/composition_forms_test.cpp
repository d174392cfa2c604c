// The streaming reader against the toolkit on composed documents: their
// pantries and ingredient lists in each form they may be written in. Where it
// reads, every collection (several masks and ranges) and the ingredient list
// are the toolkit's, error by error; where it cannot be sure, it hands the
// packet over.

#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "../fuzz/DocumentAnswers.hpp"
#include "support/CompositionPackets.hpp"

namespace {

using compositions::Composition;
using compositions::Compositions;
using compositions::Expect;
using keltemporalxmp::fuzz::Answer;
using keltemporalxmp::fuzz::StreamDocumentsAnswer;
using keltemporalxmp::fuzz::StreamPantryAnswer;
using keltemporalxmp::fuzz::ToolkitDocumentsAnswer;
using keltemporalxmp::fuzz::ToolkitPantryAnswer;

class CompositionForms : public testing::TestWithParam<Composition> {};

TEST_P(CompositionForms, CollectAndListLikeTheToolkitOrHandedOver) {
    const Composition& composition = GetParam();
    const Answer stream = StreamDocumentsAnswer(composition.packet);
    if (composition.expect == Expect::kRead) {
        ASSERT_FALSE(stream.handedOver);
        EXPECT_EQ(stream.text, ToolkitDocumentsAnswer(composition.packet).text);
    } else {
        EXPECT_TRUE(stream.handedOver) << stream.text;
    }
    const Answer pieces = StreamDocumentsAnswer(composition.packet, 5);
    EXPECT_EQ(pieces.handedOver, stream.handedOver);
    EXPECT_EQ(pieces.text, stream.text);
}

TEST_P(CompositionForms, PantryListedLikeTheToolkitOrHandedOver) {
    const Composition& composition = GetParam();
    const Answer stream = StreamPantryAnswer(composition.packet);
    if (!stream.handedOver) {
        EXPECT_EQ(stream.text, ToolkitPantryAnswer(composition.packet).text);
    }
    const Answer pieces = StreamPantryAnswer(composition.packet, 5);
    EXPECT_EQ(pieces.handedOver, stream.handedOver);
    EXPECT_EQ(pieces.text, stream.text);
}

INSTANTIATE_TEST_SUITE_P(StreamRead, CompositionForms, testing::ValuesIn(Compositions()),
                         [](const testing::TestParamInfo<Composition>& param) {
                             std::string name = param.param.name;
                             for (char& c : name) {
                                 c = std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
                             }
                             return name;
                         });

// The collections above must show what they are meant to: records from the
// pantry, and the errors of the documents whose markers are due.
TEST(CompositionForms, AnswersShowThePantryAndItsFailures) {
    const std::string& nested = Compositions()[0].packet;
    EXPECT_NE(StreamDocumentsAnswer(nested).text.find("[b]"), std::string::npos);
    const std::string& masked = Compositions()[6].packet;
    const std::string answer = StreamDocumentsAnswer(masked).text;
    EXPECT_NE(answer.find("collection error"), std::string::npos);
    EXPECT_NE(answer.find("collection\n"), std::string::npos);
    EXPECT_NE(answer.find("xmpMM:Pantry[2]/xmpDM:Tracks[1]/xmpDM:markers[1]"), std::string::npos);
}

const Composition& Named(const std::string& name) {
    const auto found = std::find_if(Compositions().begin(), Compositions().end(),
                                    [&](const Composition& composition) { return composition.name == name; });
    if (found == Compositions().end()) {
        throw std::invalid_argument("no composition named " + name);
    }
    return *found;
}

// Which forms the pantry listing reads itself: what would raise on the
// toolkit path is handed over, so that its message is the toolkit's.
TEST(CompositionForms, PantryListingReadsOrHandsOver) {
    const struct {
        const char* name;
        bool handedOver;
    } kCases[] = {
        {"nested", false},
        {"pantry items without an ID or not structs", false},
        {"document IDs in each form and ingredient lists of every item form", false},
        {"a keyword cue point that cannot be read in the pantry", true},
        {"a pantry item that is a list and one whose ingredients are no list", true},
        {"a pantry that is no list", true},
    };
    for (const auto& testCase : kCases) {
        const std::string& packet = Named(testCase.name).packet;
        EXPECT_EQ(StreamPantryAnswer(packet).handedOver, testCase.handedOver) << testCase.name;
        EXPECT_EQ(ToolkitPantryAnswer(packet).text.starts_with("error"), testCase.handedOver) << testCase.name;
    }
    const std::string ids = StreamPantryAnswer(Named(kCases[2].name).packet).text;
    EXPECT_NE(ids.find("1 [a] [doc a] 2 markers in 1 tracks, 2 ingredients"), std::string::npos) << ids;
    EXPECT_NE(ids.find("2 [b] [] 0 markers in 0 tracks, 0 ingredients"), std::string::npos) << ids;
    EXPECT_NE(ids.find("3 [] [] 0 markers in 0 tracks, 0 ingredients"), std::string::npos) << ids;
}

}  // namespace
