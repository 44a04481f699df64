#pragma once

#include <string_view>

#include "host/runtime/exception.h"

/// \file
/// The exceptions of the tree: one class for each exception code of W3C DOM, so that applications
/// catch by the kind of error. Codes that nothing raises are there for completeness.

/// The base of all exceptions of the tree; raised itself for errors that have no DOM code.
class NUXML_API ENuDomException : public host::Exception {
public:
    using host::Exception::Exception;
    ~ENuDomException() override;
};

/// DOMSTRING_SIZE_ERR. Raised by nothing.
class NUXML_API ENuDomStringSize : public ENuDomException {
public:
    using ENuDomException::ENuDomException;
    ~ENuDomStringSize() override;
};

/// HIERARCHY_REQUEST_ERR. A node that its parent cannot hold, or a second document element.
class NUXML_API ENuDomHierarchyRequest : public ENuDomException {
public:
    using ENuDomException::ENuDomException;
    ~ENuDomHierarchyRequest() override;
};

/// INDEX_SIZE_ERR. Raised by nothing.
class NUXML_API ENuDomIndexSize : public ENuDomException {
public:
    using ENuDomException::ENuDomException;
    ~ENuDomIndexSize() override;
};

/// INUSE_ATTRIBUTE_ERR. Raised by nothing.
class NUXML_API ENuDomInUseAttribute : public ENuDomException {
public:
    using ENuDomException::ENuDomException;
    ~ENuDomInUseAttribute() override;
};

/// INVALID_ACCESS_ERR. Raised by nothing.
/// Deliberate: the name has one s; applications catch it by this name.
class NUXML_API ENuDomInvalidAcces : public ENuDomException {
public:
    using ENuDomException::ENuDomException;
    ~ENuDomInvalidAcces() override;
};

/// INVALID_CHARACTER_ERR. A name, an attribute value, a comment or a CDATA section with what it
/// must not hold.
class NUXML_API ENuDomInvalidCharacter : public ENuDomException {
public:
    using ENuDomException::ENuDomException;
    ~ENuDomInvalidCharacter() override;
};

/// INVALID_MODIFICATION_ERR. Raised by nothing.
class NUXML_API ENuDomInvalidModification : public ENuDomException {
public:
    using ENuDomException::ENuDomException;
    ~ENuDomInvalidModification() override;
};

/// INVALID_STATE_ERR. Raised by nothing.
class NUXML_API ENuDomInvalidState : public ENuDomException {
public:
    using ENuDomException::ENuDomException;
    ~ENuDomInvalidState() override;
};

/// NAMESPACE_ERR. Raised by nothing.
class NUXML_API ENuDomNamespace : public ENuDomException {
public:
    using ENuDomException::ENuDomException;
    ~ENuDomNamespace() override;
};

/// NOT_FOUND_ERR. An attribute that had to be there.
class NUXML_API ENuDomNotFound : public ENuDomException {
public:
    using ENuDomException::ENuDomException;
    ~ENuDomNotFound() override;
};

/// NOT_SUPPORTED_ERR. An operation that a class does not provide.
class NUXML_API ENuDomNotSupported : public ENuDomException {
public:
    using ENuDomException::ENuDomException;
    ~ENuDomNotSupported() override;
};

/// NO_DATA_ALLOWED_ERR. Raised by nothing.
class NUXML_API ENuDomNoDataAllowed : public ENuDomException {
public:
    using ENuDomException::ENuDomException;
    ~ENuDomNoDataAllowed() override;
};

/// NO_MODIFICATION_ALLOWED_ERR. A new name for a node that has one, or another document element.
class NUXML_API ENuDomNoModificationAllowed : public ENuDomException {
public:
    using ENuDomException::ENuDomException;
    ~ENuDomNoModificationAllowed() override;
};

/// SYNTAX_ERR. An empty name.
class NUXML_API ENuDomSyntax : public ENuDomException {
public:
    using ENuDomException::ENuDomException;
    ~ENuDomSyntax() override;
};

/// TYPE_MISMATCH_ERR. A path filter on a node of the wrong kind.
class NUXML_API ENuDomTypeMismatch : public ENuDomException {
public:
    using ENuDomException::ENuDomException;
    ~ENuDomTypeMismatch() override;
};

/// VALIDATION_ERR. Raised by nothing.
class NUXML_API ENuDomValidation : public ENuDomException {
public:
    using ENuDomException::ENuDomException;
    ~ENuDomValidation() override;
};

/// WRONG_DOCUMENT_ERR. Raised by nothing: a node that goes to another document is adopted.
class NUXML_API ENuDomWrongDocument : public ENuDomException {
public:
    using ENuDomException::ENuDomException;
    ~ENuDomWrongDocument() override;
};
