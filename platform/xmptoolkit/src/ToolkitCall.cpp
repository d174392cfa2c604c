#include "ToolkitCall.hpp"

#include <exempi/xmp.h>

#include <xmptoolkit/XMP_Const.hpp>
#include <xmptoolkit/XMP_Error.hpp>

namespace xmptoolkit_detail {
namespace {

struct Toolkit {
    Toolkit() {
        if (!xmp_init()) {
            throw XMP_Error(kXMPErr_InternalFailure, "XMP toolkit initialisation failed");
        }
        InstallStderrRouter();
    }
    // The toolkit is never terminated: objects may still be freed during exit.
    std::mutex m_lock;
};

std::mutex& ToolkitLock() {
    static Toolkit toolkit;
    return toolkit.m_lock;
}

std::string_view ErrorName(int id) {
    switch (id) {
        case kXMPErr_BadObject:
            return "bad object";
        case kXMPErr_BadParam:
            return "bad parameter";
        case kXMPErr_BadValue:
            return "bad value";
        case kXMPErr_InternalFailure:
            return "internal failure";
        case kXMPErr_BadSchema:
            return "bad schema";
        case kXMPErr_BadXPath:
            return "bad XPath";
        case kXMPErr_BadOptions:
            return "bad options";
        case kXMPErr_BadIndex:
            return "bad index";
        case kXMPErr_BadIterPosition:
            return "bad iterator position";
        case kXMPErr_BadParse:
            return "bad parse";
        case kXMPErr_BadSerialize:
            return "bad serialize";
        case kXMPErr_BadFileFormat:
            return "bad file format";
        case kXMPErr_NoFileHandler:
            return "no file handler";
        case kXMPErr_NoFile:
            return "no such file";
        case kXMPErr_FilePermission:
            return "file permission";
        case kXMPErr_BadXML:
            return "bad XML";
        case kXMPErr_BadRDF:
            return "bad RDF";
        case kXMPErr_BadXMP:
            return "bad XMP";
        case kXMPErr_BadUnicode:
            return "bad Unicode";
        default:
            return "toolkit error";
    }
}

std::string WithoutTrailingSpace(std::string text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == ' ')) {
        text.pop_back();
    }
    return text;
}

}  // namespace

ToolkitGuard::ToolkitGuard() : m_lock(ToolkitLock()), m_capture(&m_printed) {}

ToolkitOutcome ToolkitGuard::Finish(bool succeeded) {
    // The toolkit reports its error ids negated.
    return ToolkitOutcome{succeeded, -xmp_get_error(), WithoutTrailingSpace(std::move(m_printed))};
}

void RaiseError(int id, std::string_view operation, std::string_view path, std::string_view detail) {
    std::string message(operation);
    message += " failed";
    if (!path.empty()) {
        message.append(" on ").append(path);
    }
    message.append(": ").append(ErrorName(id)).append(" (").append(std::to_string(id)).append(")");
    if (!detail.empty()) {
        message.append(": ").append(detail);
    }
    throw XMP_Error(id, message.c_str());
}

void RequireSuccess(const ToolkitOutcome& outcome, std::string_view operation, std::string_view path, int fallbackId) {
    if (!outcome.m_succeeded) {
        RaiseError(outcome.m_errorId != 0 ? outcome.m_errorId : fallbackId, operation, path, outcome.m_toolkitMessage);
    }
}

bool FoundUnlessFailed(const ToolkitOutcome& outcome, std::string_view operation, std::string_view path) {
    if (!outcome.m_succeeded && outcome.m_errorId != 0) {
        RaiseError(outcome.m_errorId, operation, path, outcome.m_toolkitMessage);
    }
    return outcome.m_succeeded;
}

void RequireArgument(const void* pointer, std::string_view operation, std::string_view what) {
    if (pointer == nullptr) {
        std::string message(operation);
        message.append(": null ").append(what);
        throw XMP_Error(kXMPErr_BadParam, message.c_str());
    }
}

}  // namespace xmptoolkit_detail
