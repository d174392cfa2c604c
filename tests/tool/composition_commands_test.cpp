// The composition commands end to end on the bundled composed example:
// ingredients, pantry, collect across nesting and reversal, add-ingredient,
// and the exit status and message of each kind of failure.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <kelcore/JSON.hpp>

#include "ToolRunner.hpp"

namespace tooltest {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

const std::filesystem::path kExample = std::filesystem::path(KELTXMP_SOURCE_DIR) / "examples/composition";
const std::string kSequence = (kExample / "sequence.xmp").string();

kelcore::JSONValue RunJson(const std::vector<std::string>& arguments) {
    const ToolResult result = RunTool(arguments);
    EXPECT_EQ(result.status, 0) << result.err;
    return kelcore::JSONValue::parse(result.out);
}

// Marker name to clipped start and duration in seconds.
std::vector<std::string> CollectedMarkers(const std::vector<std::string>& arguments) {
    const kelcore::JSONValue json = RunJson(arguments);
    std::vector<std::string> names;
    for (const auto& record : json["files"][0]["collected"]) {
        if (record["form"] != "component") {
            names.push_back(record["name"].get<std::string>() + "@" +
                            std::to_string(record["clippedStart"]["seconds"].get<double>()).substr(0, 4));
        }
    }
    return names;
}

TEST(CompositionCommands, IngredientsAndPantryOfTheExample) {
    const kelcore::JSONValue ingredients = RunJson({"ingredients", kSequence, "--json"})["files"][0]["ingredients"];
    std::vector<std::string> uses;
    for (const auto& ingredient : ingredients) {
        uses.push_back(ingredient["filePath"].get<std::string>() + " " + ingredient["toPart"].get<std::string>() + " " +
                       ingredient["partMapping"].get<std::string>());
    }
    EXPECT_THAT(uses,
                UnorderedElementsAre("clip-a.xmp time:0d100f25 linear", "clip-b.xmp time:100f25d100f25 linear-reversed",
                                     "scene.xmp time:200f25d100f25 linear"));
    // The scene brings its own two sources along.
    EXPECT_EQ(RunJson({"pantry", kSequence, "--json"})["files"][0]["pantry"].size(), 5u);
}

TEST(CompositionCommands, CollectMapsNestedAndReversedMarkersOntoTheTimeline) {
    EXPECT_THAT(CollectedMarkers({"collect", kSequence, "--json"}),
                UnorderedElementsAre("Sequence@0.00", "Opening@0.00", "Logo@3.00", "Splash@7.00", "Rewind@8.00",
                                     "Scene@8.00", "Ann@8.40", "Bob@10.0"));
    EXPECT_THAT(CollectedMarkers({"collect", kSequence, "--json", "--start", "8s", "--duration", "2s"}),
                UnorderedElementsAre("Sequence@8.00", "Scene@8.00", "Ann@8.40"));
    EXPECT_THAT(CollectedMarkers({"collect", kSequence, "--json", "--mask", "0x04"}), ElementsAre("Sequence@0.00"));
}

// collect --json writes its records as text directly: it must be exactly what
// the JSON library prints for the same document, whatever the texts hold.
TEST(CompositionCommands, CollectJsonIsPrintedAsTheJsonLibraryPrintsIt) {
    const ScratchDirectory scratch;
    const std::filesystem::path file = scratch / "texts.xmp";
    WriteFile(
        file,
        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
        "<rdf:Description rdf:about=\"\" xmlns:xmpMM=\"http://ns.adobe.com/xap/1.0/mm/\" "
        "xmlns:xmpDM=\"http://ns.adobe.com/xmp/1.0/DynamicMedia/\"><xmpMM:InstanceID>id \"quoted\" \\ "
        "back</xmpMM:InstanceID><xmpDM:Tracks><rdf:Bag><rdf:li rdf:parseType=\"Resource\"><xmpDM:trackName>"
        "caf\xC3\xA9 \xE6\x97\xA5</xmpDM:trackName><xmpDM:markers><rdf:Seq><rdf:li xmpDM:name=\"tab&#9;and&#10;line\" "
        "xmpDM:startTime=\"7\" xmpDM:duration=\"9223372036854775807\"/><rdf:li xmpDM:name=\"&lt;/&amp;&gt;\" "
        "xmpDM:startTime=\"1001f30000s1001\" xmpDM:type=\"\xE2\x80\xA8\"/></rdf:Seq></xmpDM:markers></rdf:li>"
        "</rdf:Bag></xmpDM:Tracks></rdf:Description></rdf:RDF></x:xmpmeta>");
    for (const char* reader : {"fast", "toolkit"}) {
        const ToolResult result = RunTool({"collect", "--json", "--reader", reader, file.string()});
        ASSERT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.out, kelcore::JSONValue::parse(result.out).dump(2) + "\n") << reader;
        EXPECT_NE(result.out.find("tab\\tand\\nline"), std::string::npos) << result.out;
    }
}

TEST(CompositionCommands, AddIngredientWritesTheOutputAndLeavesTheDocument) {
    const ScratchDirectory dir;
    const std::string document = (dir / "doc.xmp").string();
    std::filesystem::copy_file(kExample / "clip-c.xmp", document);
    const std::string before = ReadFile(document);
    const ToolResult added =
        RunTool({"add-ingredient", document, (kExample / "clip-a.xmp").string(), "--from-part", "time:0d50f25",
                 "--to-part", "time:100f25d50f25", "--mask-markers", "--output", (dir / "out.xmp").string()});
    ASSERT_EQ(added.status, 0) << added.err;
    EXPECT_EQ(ReadFile(document), before);
    const kelcore::JSONValue ingredient =
        RunJson({"ingredients", (dir / "out.xmp").string(), "--json"})["files"][0]["ingredients"][0];
    EXPECT_EQ(ingredient["toPart"], "time:100f25d50f25");
    EXPECT_EQ(ingredient["maskMarkers"], "All");
    EXPECT_THAT(CollectedMarkers({"collect", (dir / "out.xmp").string(), "--json"}), ElementsAre("Ann@0.40"));
}

TEST(CompositionCommands, FailuresNameTheProblem) {
    struct Case {
        std::vector<std::string> arguments;
        int status;
        std::string message;
    };
    const std::string source = (kExample / "clip-a.xmp").string();
    const std::vector<Case> cases = {
        {{"collect", kSequence, "--mask", "zz"}, 2, "--mask: not a hexadecimal byte"},
        {{"collect", kSequence, "--start", "soon"}, 2, "--start: "},
        {{"collect", "missing.xmp"}, 1, "missing.xmp"},
        {{"collect", kSequence, "--max-records", "3"}, 1, "more than 3 records"},
        {{"collect", kSequence, "--max-records", "0"}, 2, "--max-records: not a whole number"},
        {{"collect", kSequence, "--max-records", "18446744073709551616"}, 2, "--max-records: not a whole number"},
        {{"add-ingredient", kSequence, source, "--from-part", "0d5", "--to-part", "time:0"},
         2,
         "--from-part: not a part"},
        {{"add-ingredient", kSequence, source, "--from-part", "time:0", "--to-part", "time:0", "--mapping", "sideways"},
         2,
         "--mapping"},
        {{"add-ingredient", kSequence, "missing.xmp", "--from-part", "time:0", "--to-part", "time:0"},
         1,
         "missing.xmp"},
    };
    const std::string before = ReadFile(kSequence);
    for (const Case& test : cases) {
        const ToolResult result = RunTool(test.arguments);
        EXPECT_EQ(result.status, test.status) << test.arguments[0] << " " << result.err;
        EXPECT_THAT(result.err, HasSubstr(test.message)) << test.arguments[0];
    }
    EXPECT_EQ(ReadFile(kSequence), before);
}

}  // namespace
}  // namespace tooltest
