#pragma once

/// The elements that the Load methods of standards, symbols and revisions are handed as ULONG_PTR:
/// for those who write such a class of their own. On Windows the handle is an IXMLDOMNode*,
/// elsewhere a VeXmlNode*; sabxml::Node reads either. A handle is valid for the length of the call.

#if defined(_WIN32)
#include "node/msxml.h"
#else
#include "node/posix.h"
#endif
