#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include <xmptoolkit/XMP.hpp>

namespace {
namespace fs = std::filesystem;

using Bytes = std::vector<unsigned char>;

// A 1x1 grey PNG and a JFIF header with nothing after it: enough for the file handlers.
const Bytes kPng = {0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48, 0x44, 0x52,
                    0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x08, 0x00, 0x00, 0x00, 0x00, 0x3a, 0x7e, 0x9b,
                    0x55, 0x00, 0x00, 0x00, 0x0a, 0x49, 0x44, 0x41, 0x54, 0x78, 0x9c, 0x63, 0x60, 0x00, 0x00, 0x00,
                    0x02, 0x00, 0x01, 0x48, 0xaf, 0xa4, 0x71, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae,
                    0x42, 0x60, 0x82};
const Bytes kJpeg = {0xff, 0xd8, 0xff, 0xe0, 0x00, 0x10, 0x4a, 0x46, 0x49, 0x46, 0x00,
                     0x01, 0x01, 0x00, 0x00, 0x01, 0x00, 0x01, 0x00, 0x00, 0xff, 0xd9};

class FilesTest : public testing::Test {
protected:
    void SetUp() override {
        m_dir = fs::temp_directory_path() / ("kxmp-files-" + std::to_string(::getpid()) + "-" +
                                             testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::create_directories(m_dir);
    }
    void TearDown() override { fs::remove_all(m_dir); }

    std::string Write(const std::string& name, const Bytes& bytes) const {
        const fs::path path = m_dir / name;
        std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        return path.string();
    }
    static Bytes Read(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    size_t FileCount() const { return static_cast<size_t>(std::distance(fs::directory_iterator(m_dir), {})); }

    fs::path m_dir;
};

SXMPMeta MetaWithFormat(const std::string& format) {
    SXMPMeta meta;
    meta.SetProperty(kXMP_NS_DC, "format", format.c_str());
    meta.SetProperty(kXMP_NS_XMP_MM, "InstanceID", "xmp.iid:files-test");
    return meta;
}

XMP_Int32 ErrorOf(const std::function<void()>& action, const std::string& expectedInMessage) {
    try {
        action();
    } catch (const XMP_Error& error) {
        EXPECT_NE(std::string(error.GetErrMsg()).find(expectedInMessage), std::string::npos) << error.GetErrMsg();
        return error.GetID();
    }
    ADD_FAILURE() << "no XMP_Error";
    return 0;
}

TEST_F(FilesTest, PutXMPThenReadItBack) {
    const struct {
        std::string name;
        Bytes bytes;
        XMP_OptionBits closeFlags;
    } files[] = {
        {"safe.png", kPng, kXMPFiles_UpdateSafely},
        {"inplace.jpg", kJpeg, 0},
        {"safe.jpg", kJpeg, kXMPFiles_UpdateSafely},
        {"new.xmp", {}, kXMPFiles_UpdateSafely},
    };
    for (const auto& file : files) {
        SCOPED_TRACE(file.name);
        const std::string path = file.bytes.empty() ? (m_dir / file.name).string() : Write(file.name, file.bytes);
        {
            SXMPFiles media(path.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForUpdate);
            const SXMPMeta meta = MetaWithFormat("image/" + file.name);
            EXPECT_TRUE(media.CanPutXMP(meta));
            media.PutXMP(meta);
            media.CloseFile(file.closeFlags);
        }
        SXMPFiles media(path.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForRead);
        SXMPMeta meta;
        std::string packet, format;
        ASSERT_TRUE(media.GetXMP(&meta, &packet));
        EXPECT_TRUE(meta.GetProperty(kXMP_NS_DC, "format", &format, nullptr));
        EXPECT_EQ(format, "image/" + file.name);
        EXPECT_NE(packet.find("xmp.iid:files-test"), std::string::npos);
    }
    EXPECT_EQ(FileCount(), std::size(files)) << "no temporary files are left behind";
    EXPECT_EQ(SXMPFiles::CheckFileFormat((m_dir / "safe.png").c_str()), 0x504E4720U);  // 'PNG '
}

TEST_F(FilesTest, MissingAndUnsupportedFilesAreNamedInTheError) {
    const std::string missing = (m_dir / "missing.jpg").string();
    const std::string text = Write("notes.txt", {'h', 'e', 'l', 'l', 'o'});
    SXMPFiles media;
    EXPECT_EQ(ErrorOf([&] { media.OpenFile(missing.c_str()); }, missing), kXMPErr_NoFile);
    EXPECT_EQ(ErrorOf([&] { media.OpenFile((m_dir / "missing.xmp").c_str()); }, "missing.xmp"), kXMPErr_NoFile);
    EXPECT_EQ(ErrorOf([&] { media.OpenFile(text.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForUpdate); }, text),
              kXMPErr_NoFileHandler);
    EXPECT_EQ(ErrorOf([&] { media.GetXMP(); }, "no file is open"), kXMPErr_BadObject);
    EXPECT_EQ(SXMPFiles::CheckFileFormat(text.c_str()), kXMP_UnknownFile);
}

TEST_F(FilesTest, AFailedPutLeavesTheFileUnchanged) {
    // A packet found by scanning can only be rewritten in place, within its padding.
    const std::string scanned =
        "BINARY\x01<?xpacket begin=\"\xef\xbb\xbf\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>"
        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
        "<rdf:Description rdf:about=\"\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\" dc:format=\"a/b\"/>"
        "</rdf:RDF></x:xmpmeta>  <?xpacket end=\"w\"?>TRAILER";
    const std::string packetFile = Write("scanned.dat", Bytes(scanned.begin(), scanned.end()));
    const std::string corruptJpeg = Write("corrupt.jpg", {0xff, 0xd8, 0xff, 0xe0, 'j', 'u', 'n', 'k'});
    const std::string png = Write("readonly.png", kPng);
    const Bytes packetBefore = Read(packetFile), jpegBefore = Read(corruptJpeg), pngBefore = Read(png);
    const SXMPMeta large = MetaWithFormat(std::string(4096, 'x'));

    SXMPFiles media(packetFile.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForUpdate | kXMPFiles_OpenUsePacketScanning);
    SXMPMeta found;
    EXPECT_TRUE(media.GetXMP(&found));
    EXPECT_FALSE(media.CanPutXMP(large));
    EXPECT_EQ(ErrorOf([&] { media.PutXMP(large); }, packetFile), kXMPErr_Unavailable);
    media.CloseFile(kXMPFiles_UpdateSafely);

    // Opened for update and read, the toolkit itself would pad the truncated file.
    EXPECT_GT(ErrorOf([&] { media.OpenFile(corruptJpeg.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForUpdate); },
                      corruptJpeg),
              0);

    media.OpenFile(png.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForRead);
    EXPECT_EQ(ErrorOf([&] { media.PutXMP(large); }, "not opened for update"), kXMPErr_BadObject);
    {
        SXMPFiles dropped(png.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForUpdate);
        dropped.PutXMP(large);  // destroyed without CloseFile: nothing is written
    }

    EXPECT_EQ(Read(packetFile), packetBefore);
    EXPECT_EQ(Read(corruptJpeg), jpegBefore);
    EXPECT_EQ(Read(png), pngBefore);
    EXPECT_EQ(FileCount(), 3U) << "no temporary files are left behind";
}

}  // namespace
