#pragma once
// Types, option bits, error ids and namespace URIs of the XMP toolkit layer.
// The numbering follows the toolkit's own, so values read from XMP options
// and values passed by hosts mean the same thing everywhere.

#include <cstdint>

using XMP_Int8 = std::int8_t;
using XMP_Int32 = std::int32_t;
using XMP_Int64 = std::int64_t;
using XMP_Uns8 = std::uint8_t;
using XMP_Uns32 = std::uint32_t;
using XMP_Uns64 = std::uint64_t;
using XMP_Bool = bool;
using XMP_StringPtr = const char*;
using XMP_StringLen = std::uint32_t;
using XMP_Index = std::int32_t;
using XMP_OptionBits = std::uint32_t;
using XMP_FileFormat = std::uint32_t;

struct XMP_DateTime {
    XMP_Int32 year = 0;
    XMP_Int32 month = 0;  // 1..12
    XMP_Int32 day = 0;    // 1..31
    XMP_Int32 hour = 0;
    XMP_Int32 minute = 0;
    XMP_Int32 second = 0;
    XMP_Bool hasDate = false;
    XMP_Bool hasTime = false;
    XMP_Bool hasTimeZone = false;
    XMP_Int8 tzSign = 0;  // -1 west of UTC, 0 UTC, +1 east
    XMP_Int32 tzHour = 0;
    XMP_Int32 tzMinute = 0;
    XMP_Int32 nanoSecond = 0;
};

struct XMP_PacketInfo {
    XMP_Int64 offset = -1;
    XMP_Int32 length = -1;
    XMP_Int32 padSize = 0;
    XMP_Uns8 charForm = 0;
    XMP_Bool writeable = false;
    XMP_Bool hasWrapper = false;
};

inline constexpr XMP_Index kXMP_ArrayLastItem = -1;

// Property options.
inline constexpr XMP_OptionBits kXMP_NoOptions = 0x00000000UL;
inline constexpr XMP_OptionBits kXMP_PropValueIsURI = 0x00000002UL;
inline constexpr XMP_OptionBits kXMP_PropHasQualifiers = 0x00000010UL;
inline constexpr XMP_OptionBits kXMP_PropIsQualifier = 0x00000020UL;
inline constexpr XMP_OptionBits kXMP_PropHasLang = 0x00000040UL;
inline constexpr XMP_OptionBits kXMP_PropHasType = 0x00000080UL;
inline constexpr XMP_OptionBits kXMP_PropValueIsStruct = 0x00000100UL;
inline constexpr XMP_OptionBits kXMP_PropValueIsArray = 0x00000200UL;
inline constexpr XMP_OptionBits kXMP_PropArrayIsUnordered = kXMP_PropValueIsArray;
inline constexpr XMP_OptionBits kXMP_PropArrayIsOrdered = 0x00000400UL;
inline constexpr XMP_OptionBits kXMP_PropArrayIsAlternate = 0x00000800UL;
inline constexpr XMP_OptionBits kXMP_PropArrayIsAltText = 0x00001000UL;
inline constexpr XMP_OptionBits kXMP_InsertBeforeItem = 0x00004000UL;
inline constexpr XMP_OptionBits kXMP_InsertAfterItem = 0x00008000UL;
inline constexpr XMP_OptionBits kXMP_PropIsAlias = 0x00010000UL;
inline constexpr XMP_OptionBits kXMP_PropHasAliases = 0x00020000UL;
inline constexpr XMP_OptionBits kXMP_PropIsInternal = 0x00040000UL;
inline constexpr XMP_OptionBits kXMP_PropIsStable = 0x00100000UL;
inline constexpr XMP_OptionBits kXMP_PropIsDerived = 0x00200000UL;
inline constexpr XMP_OptionBits kXMP_SchemaNode = 0x80000000UL;
inline constexpr XMP_OptionBits kXMP_PropArrayFormMask =
    kXMP_PropValueIsArray | kXMP_PropArrayIsOrdered | kXMP_PropArrayIsAlternate | kXMP_PropArrayIsAltText;
inline constexpr XMP_OptionBits kXMP_PropCompositeMask = kXMP_PropValueIsStruct | kXMP_PropArrayFormMask;

// Parsing and serialization options.
inline constexpr XMP_OptionBits kXMP_RequireXMPMeta = 0x0001UL;
inline constexpr XMP_OptionBits kXMP_OmitPacketWrapper = 0x0010UL;
inline constexpr XMP_OptionBits kXMP_ReadOnlyPacket = 0x0020UL;
inline constexpr XMP_OptionBits kXMP_UseCompactFormat = 0x0040UL;
inline constexpr XMP_OptionBits kXMP_IncludeThumbnailPad = 0x0100UL;
inline constexpr XMP_OptionBits kXMP_ExactPacketLength = 0x0200UL;
inline constexpr XMP_OptionBits kXMP_OmitAllFormatting = 0x0800UL;

// Iteration options.
inline constexpr XMP_OptionBits kXMP_IterJustChildren = 0x0100UL;
inline constexpr XMP_OptionBits kXMP_IterJustLeafNodes = 0x0200UL;
inline constexpr XMP_OptionBits kXMP_IterJustLeafName = 0x0400UL;
inline constexpr XMP_OptionBits kXMP_IterOmitQualifiers = 0x1000UL;
inline constexpr XMP_OptionBits kXMP_IterSkipSubtree = 0x0001UL;
inline constexpr XMP_OptionBits kXMP_IterSkipSiblings = 0x0002UL;

// Template actions of TXMPUtils::ApplyTemplate.
inline constexpr XMP_OptionBits kXMPTemplate_IncludeInternalProperties = 0x0001UL;
inline constexpr XMP_OptionBits kXMPTemplate_ReplaceExistingProperties = 0x0002UL;
inline constexpr XMP_OptionBits kXMPTemplate_ReplaceWithDeleteEmpty = 0x0004UL;
inline constexpr XMP_OptionBits kXMPTemplate_AddNewProperties = 0x0008UL;
inline constexpr XMP_OptionBits kXMPTemplate_ClearUnnamedProperties = 0x0010UL;

// Media files.
inline constexpr XMP_FileFormat kXMP_UnknownFile = 0x20202020UL;
inline constexpr XMP_FileFormat kXMP_JPEGFile = 0x4A504547UL;  // 'JPEG'

inline constexpr XMP_OptionBits kXMPFiles_OpenForRead = 0x00000001UL;
inline constexpr XMP_OptionBits kXMPFiles_OpenForUpdate = 0x00000002UL;
inline constexpr XMP_OptionBits kXMPFiles_OpenOnlyXMP = 0x00000004UL;
inline constexpr XMP_OptionBits kXMPFiles_OpenStrictly = 0x00000010UL;
inline constexpr XMP_OptionBits kXMPFiles_OpenUseSmartHandler = 0x00000020UL;
inline constexpr XMP_OptionBits kXMPFiles_OpenUsePacketScanning = 0x00000040UL;
inline constexpr XMP_OptionBits kXMPFiles_UpdateSafely = 0x0001UL;

// Error ids (positive, as the toolkit numbers them).
enum {
    kXMPErr_Unknown = 0,
    kXMPErr_TBD = 1,
    kXMPErr_Unavailable = 2,
    kXMPErr_BadObject = 3,
    kXMPErr_BadParam = 4,
    kXMPErr_BadValue = 5,
    kXMPErr_AssertFailure = 6,
    kXMPErr_EnforceFailure = 7,
    kXMPErr_Unimplemented = 8,
    kXMPErr_InternalFailure = 9,
    kXMPErr_Deprecated = 10,
    kXMPErr_ExternalFailure = 11,
    kXMPErr_UserAbort = 12,
    kXMPErr_StdException = 13,
    kXMPErr_UnknownException = 14,
    kXMPErr_NoMemory = 15,
    kXMPErr_BadSchema = 101,
    kXMPErr_BadXPath = 102,
    kXMPErr_BadOptions = 103,
    kXMPErr_BadIndex = 104,
    kXMPErr_BadIterPosition = 105,
    kXMPErr_BadParse = 106,
    kXMPErr_BadSerialize = 107,
    kXMPErr_BadFileFormat = 108,
    kXMPErr_NoFileHandler = 109,
    kXMPErr_TooLargeForJPEG = 110,
    kXMPErr_NoFile = 111,
    kXMPErr_FilePermission = 112,
    kXMPErr_BadXML = 201,
    kXMPErr_BadRDF = 202,
    kXMPErr_BadXMP = 203,
    kXMPErr_EmptyIterator = 204,
    kXMPErr_BadUnicode = 205,
    kXMPErr_BadTIFF = 206,
    kXMPErr_BadJPEG = 207,
    kXMPErr_BadPSD = 208,
    kXMPErr_BadPSIR = 209,
    kXMPErr_BadIPTC = 210,
    kXMPErr_BadMPEG = 211,
};

// Standard namespace URIs.
inline constexpr XMP_StringPtr kXMP_NS_XMP = "http://ns.adobe.com/xap/1.0/";
inline constexpr XMP_StringPtr kXMP_NS_XMP_MM = "http://ns.adobe.com/xap/1.0/mm/";
inline constexpr XMP_StringPtr kXMP_NS_XMP_ResourceRef = "http://ns.adobe.com/xap/1.0/sType/ResourceRef#";
inline constexpr XMP_StringPtr kXMP_NS_XMP_ResourceEvent = "http://ns.adobe.com/xap/1.0/sType/ResourceEvent#";
inline constexpr XMP_StringPtr kXMP_NS_DM = "http://ns.adobe.com/xmp/1.0/DynamicMedia/";
inline constexpr XMP_StringPtr kXMP_NS_DC = "http://purl.org/dc/elements/1.1/";
inline constexpr XMP_StringPtr kXMP_NS_RDF = "http://www.w3.org/1999/02/22-rdf-syntax-ns#";
inline constexpr XMP_StringPtr kXMP_NS_XML = "http://www.w3.org/XML/1998/namespace";
