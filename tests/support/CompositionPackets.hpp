#pragma once
// Composed documents in each form their pantries and ingredient lists may be
// written in, some of which only the toolkit reads; for the tests that hold
// the two readers to the same answers.

#include <string>
#include <vector>

namespace compositions {

inline std::string Packet(const std::string& body, const std::string& descriptionAttributes = "") {
    return "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
           "<rdf:Description rdf:about=\"\" xmlns:xmpMM=\"http://ns.adobe.com/xap/1.0/mm/\""
           " xmlns:stRef=\"http://ns.adobe.com/xap/1.0/sType/ResourceRef#\""
           " xmlns:xmpDM=\"http://ns.adobe.com/xmp/1.0/DynamicMedia/\" xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\"" +
           descriptionAttributes + ">" + body + "</rdf:Description></rdf:RDF></x:xmpmeta>";
}

inline std::string Id(const std::string& name) {
    return "<xmpMM:InstanceID>" + name + "</xmpMM:InstanceID>";
}

// One track of markers at the given start times (texts, so that bad ones can be written).
inline std::string Tracks(const std::vector<std::string>& starts, const std::string& name = "T") {
    std::string text = "<xmpDM:Tracks><rdf:Bag><rdf:li rdf:parseType=\"Resource\"><xmpDM:trackName>" + name +
                       "</xmpDM:trackName><xmpDM:frameRate>f25</xmpDM:frameRate><xmpDM:markers><rdf:Seq>";
    for (const std::string& start : starts) {
        text += "<rdf:li rdf:parseType=\"Resource\"><xmpDM:startTime>" + start +
                "</xmpDM:startTime><xmpDM:duration>5</xmpDM:duration><xmpDM:name>" + name + "@" + start +
                "</xmpDM:name></rdf:li>";
    }
    return text + "</rdf:Seq></xmpDM:markers></rdf:li></rdf:Bag></xmpDM:Tracks>";
}

inline std::string Use(const std::string& id, const std::string& from, const std::string& to,
                       const std::string& extra = "") {
    return "<rdf:li rdf:parseType=\"Resource\"><stRef:instanceID>" + id + "</stRef:instanceID><stRef:fromPart>" + from +
           "</stRef:fromPart><stRef:toPart>" + to + "</stRef:toPart>" + extra + "</rdf:li>";
}

inline std::string Ingredients(const std::string& items) {
    return "<xmpMM:Ingredients><rdf:Bag>" + items + "</rdf:Bag></xmpMM:Ingredients>";
}

inline std::string Item(const std::string& fields) {
    return "<rdf:li rdf:parseType=\"Resource\">" + fields + "</rdf:li>";
}

inline std::string Pantry(const std::string& items) {
    return "<xmpMM:Pantry><rdf:Bag>" + items + "</rdf:Bag></xmpMM:Pantry>";
}

enum class Expect { kRead, kHandedOver };

struct Composition {
    const char* name;
    std::string packet;
    Expect expect;
};

inline const std::vector<Composition>& Compositions() {
    const std::string top = Id("top") + Tracks({"0", "100"}, "Top");
    const std::string clipA = Item(Id("a") + Tracks({"0", "50", "200"}, "A"));
    const std::string clipB = Item(Id("b") + Tracks({"10"}, "B"));
    static const std::vector<Composition> compositions = {
        {"nested",
         Packet(top + Ingredients(Use("a", "time:0d300", "time:100d300")) +
                Pantry(Item(Id("a") + Tracks({"0", "50"}, "A") +
                            Ingredients(Use("b", "time:0d100", "time:25d100",
                                            "<stRef:partMapping>linear-reversed"
                                            "</stRef:partMapping>"))) +
                       clipB)),
         Expect::kRead},
        {"shared and masked",
         Packet(top +
                Ingredients(Use("a", "time:0d100", "time:0d100") + Use("a", "time:50d100", "time:500d200") +
                            Use("b", "time:0d20", "time:900d20", "<stRef:maskMarkers>All</stRef:maskMarkers>")) +
                Pantry(clipA + clipB)),
         Expect::kRead},
        {"cyclic",
         Packet(Id("loop") + Ingredients(Use("loop", "time:0d10", "time:0d10")) +
                Pantry(Item(Id("loop") + Tracks({"1"}) + Ingredients(Use("loop", "time:0d10", "time:0d10"))))),
         Expect::kRead},
        {"duplicated instance IDs: the first item wins",
         Packet(top + Ingredients(Use("a", "time:0d300", "time:0d300")) +
                Pantry(clipA + Item(Id("a") + Tracks({"7"}, "Second")))),
         Expect::kRead},
        {"pantry items without an ID or not structs",
         Packet(top + Ingredients(Use("a", "time:0d300", "time:0d300") + Use("", "time:0d1", "time:0d1")) +
                Pantry("<rdf:li>text</rdf:li>" + Item(Tracks({"3"})) + clipA)),
         Expect::kRead},
        {"unreadable parts",
         Packet(top +
                Ingredients(Use("a", "time:0d300", "nonsense") + Use("b", "time:x", "time:0d1") +
                            Use("b", "time:0d20", "time:40d20")) +
                Pantry(clipA + clipB)),
         Expect::kRead},
        {"an unconvertible time where only a masked use reads it",
         Packet(top + Ingredients(Use("bad", "time:0d20", "time:0d20", "<stRef:maskMarkers>All</stRef:maskMarkers>")) +
                Pantry("<rdf:li>not a struct</rdf:li>" + Item(Id("bad") + Tracks({"12f0"})))),
         Expect::kRead},
        {"an unconvertible time in the top document",
         Packet(Id("top") + Tracks({"1", "12f0"}) + Ingredients(Use("a", "time:0d300", "time:0d300")) + Pantry(clipA)),
         Expect::kRead},
        {"attribute forms",
         Packet(Tracks({"4"}) +
                    "<xmpMM:Ingredients><rdf:Seq><rdf:li stRef:instanceID=\"a\" stRef:fromPart=\"time:0d300\" "
                    "stRef:toPart=\"time:10d300\" stRef:filePath=\"clip a.mov\"/></rdf:Seq></xmpMM:Ingredients>"
                    "<xmpMM:Pantry><rdf:Seq><rdf:li><rdf:Description xmpMM:InstanceID=\"a\">" +
                    Tracks({"0", "20"}) + "</rdf:Description></rdf:li></rdf:Seq></xmpMM:Pantry>",
                " xmpMM:InstanceID=\"top\""),
         Expect::kRead},
        {"other prefixes and fields of other schemas",
         "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
         "<rdf:Description rdf:about=\"\" xmlns:mm=\"http://ns.adobe.com/xap/1.0/mm/\" "
         "xmlns:ref=\"http://ns.adobe.com/xap/1.0/sType/ResourceRef#\" xmlns:o=\"http://other/\">"
         "<mm:InstanceID>top</mm:InstanceID><mm:Ingredients><rdf:Bag><rdf:li rdf:parseType=\"Resource\">"
         "<ref:instanceID>a</ref:instanceID><o:instanceID>b</o:instanceID><ref:fromPart>time:0d9</ref:fromPart>"
         "<ref:toPart>time:0d9</ref:toPart></rdf:li></rdf:Bag></mm:Ingredients><mm:Pantry><rdf:Bag>"
         "<rdf:li rdf:parseType=\"Resource\"><mm:InstanceID>a</mm:InstanceID><o:InstanceID>b</o:InstanceID>"
         "</rdf:li></rdf:Bag></mm:Pantry></rdf:Description></rdf:RDF></x:xmpmeta>",
         Expect::kRead},
        {"fields that are not simple and top-level ingredient fields",
         Packet(
             top + "<xmpMM:placedXResolution>300</xmpMM:placedXResolution>" +
             Ingredients(Use("a", "time:0d300", "time:0d300",
                             "<stRef:filePath><rdf:Bag><rdf:li>x</rdf:li></rdf:Bag></stRef:filePath>"
                             "<stRef:fileModTime>2020</stRef:fileModTime>") +
                         Use("a", "time:0d300", "time:5d1", "<stRef:documentID>second of one key</stRef:documentID>")) +
             Pantry(clipA)),
         Expect::kRead},
        {"a pantry in another description",
         Packet(top + Ingredients(Use("b", "time:0d20", "time:0d20")) +
                "</rdf:Description><rdf:Description rdf:about=\"\" "
                "xmlns:xmpMM=\"http://ns.adobe.com/xap/1.0/mm/\" "
                "xmlns:xmpDM=\"http://ns.adobe.com/xmp/1.0/DynamicMedia/\">" +
                Pantry(clipB)),
         Expect::kRead},

        {"document IDs in each form and ingredient lists of every item form",
         Packet(top + Pantry(Item(Id("a") + "<xmpMM:DocumentID>doc a</xmpMM:DocumentID>" + Tracks({"0", "7"}) +
                                  Ingredients(Use("x", "time:0d1", "time:0d1") + "<rdf:li>text</rdf:li>")) +
                             Item(Id("b") + "<xmpMM:DocumentID rdf:parseType=\"Resource\"><xmp:a>1</xmp:a>"
                                            "</xmpMM:DocumentID><xmpMM:Ingredients><rdf:Seq/></xmpMM:Ingredients>") +
                             "<rdf:li>text</rdf:li>")),
         Expect::kRead},
        {"a keyword cue point that cannot be read in the pantry",
         Packet(top + Ingredients(Use("k", "time:0d1", "time:0d1")) +
                Pantry(Item(Id("k") + Tracks({"1"}).insert(
                                          Tracks({"1"}).find("<xmpDM:name>"),
                                          "<xmpDM:cuePointParams><rdf:Seq><rdf:li rdf:parseType=\"Resource\">"
                                          "<xmpDM:key>keywordExtKELv1_k</xmpDM:key><xmpDM:value>not json</xmpDM:value>"
                                          "</rdf:li></rdf:Seq></xmpDM:cuePointParams>")))),
         Expect::kRead},
        {"a pantry item that is a list and one whose ingredients are no list",
         Packet(top + Pantry("<rdf:li><rdf:Seq><rdf:li>x</rdf:li></rdf:Seq></rdf:li>" +
                             Item(Id("c") + "<xmpMM:Ingredients>none</xmpMM:Ingredients>"))),
         Expect::kRead},
        {"a pantry that is no list",
         Packet(top + "<xmpMM:Pantry rdf:parseType=\"Resource\">" + Id("d") + "</xmpMM:Pantry>"), Expect::kRead},
        {"pantry as alternatives", Packet(top + "<xmpMM:Pantry><rdf:Alt>" + clipA + "</rdf:Alt></xmpMM:Pantry>"),
         Expect::kHandedOver},
        {"ingredient field given twice",
         Packet(top + Ingredients(Use("a", "time:0d1", "time:0d1", "<stRef:toPart>time:2d1</stRef:toPart>"))),
         Expect::kHandedOver},
        {"instance ID with qualifiers",
         Packet("<xmpMM:InstanceID rdf:parseType=\"Resource\"><rdf:value>top</rdf:value><xmp:q>q</xmp:q>"
                "</xmpMM:InstanceID>"),
         Expect::kHandedOver},
        {"truncated", Packet(top + Pantry(clipA)).substr(0, 400), Expect::kHandedOver},
    };
    return compositions;
}

}  // namespace compositions
