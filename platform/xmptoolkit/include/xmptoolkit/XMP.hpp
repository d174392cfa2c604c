#pragma once
// The XMP toolkit layer in one include, with the std::string instantiations.

#include <string>

#include <xmptoolkit/TXMPDocOps.hpp>
#include <xmptoolkit/TXMPFiles.hpp>
#include <xmptoolkit/TXMPIterator.hpp>
#include <xmptoolkit/TXMPMeta.hpp>
#include <xmptoolkit/TXMPUtils.hpp>
#include <xmptoolkit/XMP_Const.hpp>
#include <xmptoolkit/XMP_Error.hpp>

using SXMPMeta = TXMPMeta<std::string>;
using SXMPIterator = TXMPIterator<std::string>;
using SXMPUtils = TXMPUtils<std::string>;
using SXMPDocOps = TXMPDocOps<std::string>;
using SXMPFiles = TXMPFiles<std::string>;
