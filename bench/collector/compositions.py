#!/usr/bin/env python3
"""Writes large and hostile composed sidecars for timing `keltemporalxmp collect`.

Usage:
  compositions.py flat USES MARKERS [TEXT] one clip of MARKERS markers (comments TEXT bytes long) used
                                           USES times side by side
  compositions.py nested OUTER INNER       OUTER uses of a reel that uses a one-marker clip INNER times
  compositions.py fanout DOCS USES MARKERS a pantry chain: each document uses the next USES times
  compositions.py cycle USES               a document that uses itself USES times
The sidecar goes to standard output.
"""
import sys
import uuid

NAMESPACES = """    xmlns:xmpMM="http://ns.adobe.com/xap/1.0/mm/"
    xmlns:stRef="http://ns.adobe.com/xap/1.0/sType/ResourceRef#"
    xmlns:xmpDM="http://ns.adobe.com/xmp/1.0/DynamicMedia/\""""


def instance_id(name):
    return "xmp.iid:" + str(uuid.uuid5(uuid.NAMESPACE_URL, name))


def comment(i, length):
    return f"A comment on marker {i}" if length is None else "x" * length


def tracks(markers, out, comment_bytes=None):
    if markers == 0:
        return
    out.append("<xmpDM:Tracks><rdf:Bag><rdf:li rdf:parseType=\"Resource\">")
    out.append("<xmpDM:trackName>Notes</xmpDM:trackName><xmpDM:frameRate>f25</xmpDM:frameRate>")
    out.append("<xmpDM:markers><rdf:Seq>")
    for i in range(markers):
        out.append(f"<rdf:li rdf:parseType=\"Resource\"><xmpDM:startTime>{i * 25}</xmpDM:startTime>"
                   f"<xmpDM:duration>12</xmpDM:duration><xmpDM:name>Marker {i}</xmpDM:name>"
                   f"<xmpDM:comment>{comment(i, comment_bytes)}</xmpDM:comment></rdf:li>")
    out.append("</rdf:Seq></xmpDM:markers></rdf:li></rdf:Bag></xmpDM:Tracks>")


def uses(source, count, length, side_by_side, out):
    if count == 0:
        return
    out.append("<xmpMM:Ingredients><rdf:Bag>")
    for i in range(count):
        start = i * length if side_by_side else 0
        out.append(f"<rdf:li rdf:parseType=\"Resource\"><stRef:instanceID>{instance_id(source)}</stRef:instanceID>"
                   f"<stRef:fromPart>time:0d{length}</stRef:fromPart>"
                   f"<stRef:toPart>time:{start}d{length}</stRef:toPart>"
                   f"<stRef:partMapping>linear</stRef:partMapping></rdf:li>")
    out.append("</rdf:Bag></xmpMM:Ingredients>")


def document(name, markers, source, count, length, side_by_side, out, comment_bytes=None):
    """One document's properties: (name, markers, source, count, length, side_by_side[, comment_bytes])."""
    out.append(f"<xmpMM:InstanceID>{instance_id(name)}</xmpMM:InstanceID>")
    tracks(markers, out, comment_bytes)
    uses(source, count, length, side_by_side, out)


def composition(top, pantry):
    out = ["<?xpacket begin=\"\ufeff\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>",
           "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">",
           f"<rdf:Description rdf:about=\"\"\n{NAMESPACES}>"]
    document(*top[:6], out)
    out.append("<xmpMM:Pantry><rdf:Bag>")
    for entry in pantry:
        out.append("<rdf:li rdf:parseType=\"Resource\">")
        document(*entry[:6], out, *entry[6:])
        out.append("</rdf:li>")
    out.append("</rdf:Bag></xmpMM:Pantry></rdf:Description></rdf:RDF></x:xmpmeta>")
    out.append("<?xpacket end=\"w\"?>")
    return "\n".join(out) + "\n"


def main(argv):
    kind, numbers = argv[1], [int(n) for n in argv[2:]]
    if kind == "flat":
        count, markers = numbers[:2]
        comment_bytes = numbers[2] if len(numbers) > 2 else None
        text = composition(("top", 0, "clip", count, 1, True), [("clip", markers, "", 0, 1, True, comment_bytes)])
    elif kind == "nested":
        outer, inner = numbers
        text = composition(("top", 0, "reel", outer, inner, True),
                           [("reel", 0, "clip", inner, 1, True), ("clip", 1, "", 0, 1, True)])
    elif kind == "fanout":
        documents, count, markers = numbers
        pantry = [(f"n{n}", markers, f"n{n + 1}", count if n < documents else 0, 10, False)
                  for n in range(1, documents + 1)]
        text = composition(("top", 0, "n1", 1, 10, False), pantry)
    elif kind == "cycle":
        (count,) = numbers
        text = composition(("top", 0, "loop", 1, 10, False), [("loop", 1, "loop", count, 10, False)])
    else:
        sys.exit(__doc__)
    sys.stdout.write(text)


if __name__ == "__main__":
    main(sys.argv)
