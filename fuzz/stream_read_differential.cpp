// A packet through both readers, for its tracks, for its collections and
// ingredient list, and for its pantry's documents: wherever the streaming reader answers, its answer is the
// toolkit's, record by record or error by error, and feeding the packet in
// pieces changes nothing.

#include "DocumentAnswers.hpp"
#include "FuzzInput.hpp"
#include "TrackAnswers.hpp"

using namespace keltemporalxmp;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view packet(reinterpret_cast<const char*>(data), size);
    const fuzz::Answer stream = fuzz::StreamAnswer(packet);
    const fuzz::Answer pieces = fuzz::StreamAnswer(packet, 1 + size % 61);
    if (pieces.handedOver != stream.handedOver || pieces.text != stream.text) {
        __builtin_trap();
    }
    if (!stream.handedOver && stream.text != fuzz::ToolkitAnswer(packet).text) {
        __builtin_trap();
    }
    const fuzz::Answer documents = fuzz::StreamDocumentsAnswer(packet);
    const fuzz::Answer documentPieces = fuzz::StreamDocumentsAnswer(packet, 1 + size % 53);
    if (documentPieces.handedOver != documents.handedOver || documentPieces.text != documents.text) {
        __builtin_trap();
    }
    if (!documents.handedOver && documents.text != fuzz::ToolkitDocumentsAnswer(packet).text) {
        __builtin_trap();
    }
    const fuzz::Answer pantry = fuzz::StreamPantryAnswer(packet);
    const fuzz::Answer pantryPieces = fuzz::StreamPantryAnswer(packet, 1 + size % 47);
    if (pantryPieces.handedOver != pantry.handedOver || pantryPieces.text != pantry.text) {
        __builtin_trap();
    }
    if (!pantry.handedOver && pantry.text != fuzz::ToolkitPantryAnswer(packet).text) {
        __builtin_trap();
    }
    return 0;
}
