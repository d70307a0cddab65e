#pragma once

#include <QByteArray>
#include <string>
#include <utility>
#include <vector>

namespace tavo::python {

// Looks at what of Qt the process has, before a call lets vireo's window make its QApplication.
//
//     const QtGuard guard("vireo.show()");
//     if (guard.allowsWindow())
//         ...
//
// Beside another Qt, pictures are made as if there were no display, and never by the plugins that another package
// names. To be made with the interpreter's lock.
class QtGuard
{
public:
    explicit QtGuard(const std::string& call);
    ~QtGuard();
    QtGuard(const QtGuard&) = delete;
    QtGuard& operator=(const QtGuard&) = delete;

    // If not, a line in the log has said why.
    bool allowsWindow() const { return m_AllowsWindow; }
    bool allowsPictures() const { return m_AllowsPictures; }

private:
    void change(const char* variable, const QByteArray& value);

    std::vector<std::pair<const char*, QByteArray>> m_Changed; // variables of the environment, and what they were
    bool m_AllowsWindow = true;
    bool m_AllowsPictures = true;
};

// Whether there is a QApplication, in another thread than this.
bool isQtElsewhere();

} // namespace tavo::python
