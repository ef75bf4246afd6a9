#pragma once

#include <memory>
#include <string>

#include "core/file_association.h"

namespace nqp::platform {

// In the present user's part of the registry. What the user has chosen in the system's own dialog
// goes before it, and stays as it is.
class SystemFileAssociation final : public core::FileAssociation {
public:
    // Throws at what is no extension; after that none is set.
    void SetExtension(const std::string& extension) override;
    void SetCommand(const std::string& commandLine) override;
    void Register() override;
    void UnRegister() override;

    void RegisterStart(const std::string& commandLine) override;
    void UnRegisterStart() override;

private:
    std::wstring extension_;
    std::wstring command_;
};

class SystemFileAssociations final : public core::FileAssociationFactory {
public:
    std::unique_ptr<core::FileAssociation> Create() override;
};

}  // namespace nqp::platform
