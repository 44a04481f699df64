#include "nuXmlDOM/core/domErrors.h"

// Each class has its table of virtual functions here, so that it is the same in every library.

ENuDomException::~ENuDomException() = default;
ENuDomStringSize::~ENuDomStringSize() = default;
ENuDomHierarchyRequest::~ENuDomHierarchyRequest() = default;
ENuDomIndexSize::~ENuDomIndexSize() = default;
ENuDomInUseAttribute::~ENuDomInUseAttribute() = default;
ENuDomInvalidAcces::~ENuDomInvalidAcces() = default;
ENuDomInvalidCharacter::~ENuDomInvalidCharacter() = default;
ENuDomInvalidModification::~ENuDomInvalidModification() = default;
ENuDomInvalidState::~ENuDomInvalidState() = default;
ENuDomNamespace::~ENuDomNamespace() = default;
ENuDomNotFound::~ENuDomNotFound() = default;
ENuDomNotSupported::~ENuDomNotSupported() = default;
ENuDomNoDataAllowed::~ENuDomNoDataAllowed() = default;
ENuDomNoModificationAllowed::~ENuDomNoModificationAllowed() = default;
ENuDomSyntax::~ENuDomSyntax() = default;
ENuDomTypeMismatch::~ENuDomTypeMismatch() = default;
ENuDomValidation::~ENuDomValidation() = default;
ENuDomWrongDocument::~ENuDomWrongDocument() = default;
