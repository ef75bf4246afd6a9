#pragma once

#include <memory>
#include <string>

namespace nqp::core {

// What the system opens with this program, in the table of the present user. It works on one file
// type at a time; an operation that fails throws forms::RunTimeError and has changed nothing else.
class FileAssociation {
public:
    virtual ~FileAssociation() = default;

    // With its leading ".".
    virtual void SetExtension(const std::string& extension) = 0;
    // The program and the shell's placeholder for the file, as the shell is to run it.
    virtual void SetCommand(const std::string& commandLine) = 0;
    // Files of the extension open with the command from now on. What opened them before is kept.
    virtual void Register() = 0;
    // Gives the extension back to what opened its files before; one that is not registered is left
    // as it is.
    virtual void UnRegister() = 0;

    // Runs the command line when the user logs on, and no more. To remove what is not there is no
    // error.
    virtual void RegisterStart(const std::string& commandLine) = 0;
    virtual void UnRegisterStart() = 0;
};

// A new one for each use.
class FileAssociationFactory {
public:
    virtual std::unique_ptr<FileAssociation> Create() = 0;

protected:
    ~FileAssociationFactory() = default;
};

}  // namespace nqp::core
