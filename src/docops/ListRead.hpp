#pragma once
// A list read from the metadata at its first use may fail part-way. Writing
// such a list back would delete what was not read, so the failure is kept and
// the write refused.

#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include <xmptoolkit/XMP.hpp>

namespace keltemporalxmp {
namespace [[gnu::visibility("hidden")]] docops {

// Runs the read; when it throws, `failure` keeps why and the error goes on.
template <class Read>
void ReadKeepingFailure(std::string& failure, Read&& read) {
    try {
        std::forward<Read>(read)();
    } catch (const XMP_Error& error) {
        failure = error.GetErrMsg();
        throw;
    } catch (const std::exception& error) {
        failure = error.what();
        throw;
    }
}

// XMP_Error naming the list when its read failed.
void RequireCompleteRead(const std::string& failure, std::string_view listPath);

}  // namespace docops
}  // namespace keltemporalxmp
