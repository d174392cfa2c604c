#include "Documents.hpp"

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>

#include <xmptoolkit/DocumentFiles.hpp>
#include <xmptoolkit/XMP_PacketLimits.hpp>

#include "Errors.hpp"
#include "InputFiles.hpp"

namespace keltemporalxmp::tool {
namespace {

// Below this many files a progress line would only flicker.
constexpr std::size_t kProgressMinimumFiles = 5;

// The toolkit would block on a FIFO and read a device without end.
void CheckDocumentFile(const std::string& path) {
    CheckInputFile(path, IsSidecar(path) ? XMP_PacketLimits::kMaxPacketBytes : UINTMAX_MAX);
}

// With `edit`, the XMP of `path` is read, edited and written; without, `meta`.
void PutDocument(const std::string& path, const std::string& output, const SXMPMeta& meta,
                 const xmptoolkit::XMPEdit* edit) {
    CheckDocumentFile(path);
    if (!output.empty() && !IsSidecar(output) && IsSidecar(path)) {
        throw UsageError("the XMP of a sidecar can only be written to a sidecar (.xmp), not to " + output);
    }
    xmptoolkit::PutDocumentXMP(path, output, meta, edit);
}

class Progress {
public:
    explicit Progress(std::size_t total)
        : m_total(total), m_shown(total >= kProgressMinimumFiles && ::isatty(STDERR_FILENO) != 0) {}
    ~Progress() { Clear(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Show(std::size_t done, const std::string& file) const {
        if (m_shown) {
            std::fprintf(stderr, "\r\033[K[%zu/%zu] %s", done + 1, m_total, file.c_str());
            std::fflush(stderr);
        }
    }
    void Clear() const {
        if (m_shown) {
            std::fprintf(stderr, "\r\033[K");
            std::fflush(stderr);
        }
    }

private:
    std::size_t m_total;
    bool m_shown;
};

}  // namespace

bool IsSidecar(const std::string& path) {
    return xmptoolkit::IsSidecarPath(path);
}

SXMPMeta ReadDocument(const std::string& path) {
    CheckDocumentFile(path);
    return xmptoolkit::ReadDocumentXMP(path);
}

void UpdateDocument(const std::string& path, const std::string& output, const std::function<void(SXMPMeta&)>& edit) {
    PutDocument(path, output, SXMPMeta(), &edit);
}

void WriteDocument(const std::string& path, const SXMPMeta& meta, const std::string& output) {
    PutDocument(path, output, meta, nullptr);
}

int ForEachFile(const std::vector<std::string>& files, const std::function<void(const std::string&)>& action) {
    const Progress progress(files.size());
    int status = kExitOk;
    for (std::size_t i = 0; i < files.size(); ++i) {
        progress.Show(i, files[i]);
        try {
            action(files[i]);
        } catch (const UsageError&) {
            throw;
        } catch (...) {
            progress.Clear();
            ReportError(files[i], DescribeError(std::current_exception()));
            status = kExitBadInput;
        }
    }
    return status;
}

std::string DescribeError(const std::exception_ptr& error) {
    std::string message;
    try {
        std::rethrow_exception(error);
    } catch (const XMP_Error& xmpError) {
        message = xmpError.GetErrMsg();
    } catch (const std::exception& exception) {
        message = exception.what();
    } catch (...) {
        message = "unknown error";
    }
    // One line per problem, whatever the toolkit's message holds.
    std::replace(message.begin(), message.end(), '\n', ' ');
    return message;
}

void ReportError(const std::string& subject, const std::string& message) {
    std::fprintf(stderr, "keltemporalxmp: %s: %s\n", subject.c_str(), message.c_str());
}

}  // namespace keltemporalxmp::tool
