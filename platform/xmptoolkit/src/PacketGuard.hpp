#pragma once
// Checks packet text against XMP_PacketLimits before the toolkit parses it:
// the toolkit recurses once per element level and looks up every named child
// among its siblings, so a deep or wide packet could overflow the stack or run
// for minutes. A packet beyond a limit is XMP_Error bad XML naming the limit
// and the line. Malformed XML is left to the toolkit, which refuses it at the
// same place, after no more than the guard has checked.

#include <string_view>

#include <xmptoolkit/XMP_Const.hpp>

namespace xmptoolkit_detail {

// `errorId` lets the serializer refuse its own output under its own id: the
// toolkit writes some compact forms out at one more level than they were read.
void GuardPacket(std::string_view packet, std::string_view operation, int errorId = kXMPErr_BadXML);

// Every packet a file handler could find in a media file's bytes: text that
// starts with an xpacket header, x:xmpmeta or rdf:RDF, in UTF-8 or UTF-16.
void GuardEmbeddedPackets(std::string_view fileBytes, std::string_view operation, std::string_view path);

}  // namespace xmptoolkit_detail
