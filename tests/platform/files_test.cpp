#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
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
const Bytes kPng = {0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48,
                    0x44, 0x52, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x08, 0x00, 0x00, 0x00,
                    0x00, 0x3a, 0x7e, 0x9b, 0x55, 0x00, 0x00, 0x00, 0x0a, 0x49, 0x44, 0x41, 0x54, 0x78,
                    0x9c, 0x63, 0x60, 0x00, 0x00, 0x00, 0x02, 0x00, 0x01, 0x48, 0xaf, 0xa4, 0x71, 0x00,
                    0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82};
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

// What the command-line tool never does: write in place without the safe
// replace, drop a put without closing, or misuse a handle.
TEST_F(FilesTest, PutWithoutSafeReplaceAndHandleMisuse) {
    const std::string jpeg = Write("inplace.jpg", kJpeg);
    const std::string png = Write("readonly.png", kPng);
    const SXMPMeta meta = MetaWithFormat("image/jpeg");
    {
        SXMPFiles media(jpeg.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForUpdate);
        media.PutXMP(meta);
        media.CloseFile();
    }
    SXMPFiles media(jpeg.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForRead);
    std::string packet;
    ASSERT_TRUE(media.GetXMP(nullptr, &packet));
    EXPECT_NE(packet.find("xmp.iid:files-test"), std::string::npos);
    media.CloseFile();
    EXPECT_EQ(SXMPFiles::CheckFileFormat(png.c_str()), 0x504E4720U);  // 'PNG '

    const Bytes pngBefore = Read(png);
    EXPECT_EQ(ErrorOf([&] { media.GetXMP(); }, "no file is open"), kXMPErr_BadObject);
    media.OpenFile(png.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForRead);
    EXPECT_EQ(ErrorOf([&] { media.PutXMP(meta); }, "not opened for update"), kXMPErr_BadObject);
    {
        SXMPFiles dropped(png.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForUpdate);
        dropped.PutXMP(meta);  // destroyed without CloseFile: nothing is written
    }
    EXPECT_EQ(Read(png), pngBefore);
    EXPECT_EQ(FileCount(), 2U) << "no temporary files are left behind";
}

}  // namespace

namespace {

// What a host other than the tool relies on: a file open for update is
// locked against other updates until it is closed, read-only files are
// refused, and a copy leaves its source alone.
TEST_F(FilesTest, UpdatesAreLockedReadOnlyFilesRefusedAndCopiesLeaveTheSource) {
    const std::string sidecar = Write("doc.xmp", {});
    const SXMPMeta meta = MetaWithFormat("image/png");
    ::setenv("KELTEMPORALXMP_LOCK_TIMEOUT", "0.05", 1);
    {
        SXMPFiles first(sidecar.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForUpdate);
        SXMPFiles second;
        EXPECT_EQ(ErrorOf([&] { second.OpenFile(sidecar.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForUpdate); },
                          "another program is writing this file (waited 0.05 s for its lock)"),
                  kXMPErr_ExternalFailure);
        first.PutXMP(meta);
        first.CloseFile(kXMPFiles_UpdateSafely);
        second.OpenFile(sidecar.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForUpdate);
    }
    ::unsetenv("KELTEMPORALXMP_LOCK_TIMEOUT");

    const std::string png = Write("source.png", kPng);
    ASSERT_EQ(::chmod(png.c_str(), 0444), 0);
    SXMPFiles file;
    EXPECT_EQ(ErrorOf([&] { file.OpenFile(png.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForUpdate); },
                      "read-only (mode 0444)"),
              kXMPErr_FilePermission);
    const std::string copy = (m_dir / "copy.png").string();
    SXMPFiles::PutXMPIntoCopy(png.c_str(), copy.c_str(), meta);
    EXPECT_EQ(Read(png), kPng);
    std::string packet;
    SXMPFiles written(copy.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForRead);
    ASSERT_TRUE(written.GetXMP(nullptr, &packet));
    EXPECT_NE(packet.find("image/png"), std::string::npos);
    EXPECT_EQ(FileCount(), 3U) << "no temporary files are left behind";
}

}  // namespace
