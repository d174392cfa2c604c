// Reads a packet file and prints the library's version-independent view of its
// markers: type, name and start in seconds, one per line.
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include <kelcore/UTF.hpp>
#include <keltemporalxmp/keltemporalxmp.hpp>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: host PACKET\n");
        return 2;
    }
    std::ifstream file(argv[1], std::ios::binary);
    const std::string packet{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    try {
        SXMPMeta meta(packet.data(), static_cast<XMP_StringLen>(packet.size()));
        keltemporalxmp::MarkerList markers;
        keltemporalxmp::ReadAllMarkers(meta, markers);
        for (const auto& marker : markers) {
            std::printf("%s %s %.3f\n", kelcore::UTF16to8(marker->GetType()).c_str(),
                        kelcore::UTF16to8(marker->GetName()).c_str(),
                        keltemporalxmp::XMPDocOpsTemporal::ConvertTicksToSeconds(marker->GetStartTime().GetTicks()));
        }
    } catch (const XMP_Error& error) {
        std::fprintf(stderr, "host: %s\n", error.GetErrMsg());
        return 1;
    }
    return 0;
}
