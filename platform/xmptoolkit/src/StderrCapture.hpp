#pragma once
// The toolkit prints the message of every failure it catches on std::cerr.
// The layer turns those messages into the text of its XMP_Error instead of
// letting them reach the host's terminal.

#include <string>

namespace xmptoolkit_detail {

// Routes std::cerr through a forwarder, once per process. Text written on a
// thread that holds a StderrCapture goes to that capture; everything else
// passes through unchanged.
void InstallStderrRouter();

class StderrCapture {
public:
    explicit StderrCapture(std::string* target);
    ~StderrCapture();
    StderrCapture(const StderrCapture&) = delete;
    StderrCapture& operator=(const StderrCapture&) = delete;

private:
    std::string* m_previous;
};

}  // namespace xmptoolkit_detail
