// The streaming reader against the toolkit on composed documents: their
// pantries and ingredient lists in each form they may be written in. Where it
// reads, every collection (several masks and ranges) and the ingredient list
// are the toolkit's, error by error; where it cannot be sure, it hands the
// packet over.

#include <cctype>
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
using keltemporalxmp::fuzz::ToolkitDocumentsAnswer;

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

}  // namespace
