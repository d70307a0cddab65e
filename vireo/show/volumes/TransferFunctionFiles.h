#pragma once

#include <QWidget>
#include <functional>

#include "vireo/show/volumes/TransferFunction.h"

class QLabel;
class QPushButton;

namespace tavo {

// Buttons that save a transfer function in a file, and load another one. What is wrong with a file is said below them,
// and in the log.
class TransferFunctionFiles : public QWidget
{
    Q_OBJECT

public:
    explicit TransferFunctionFiles(QWidget* parent = nullptr);

    // What is saved.
    void setFunction(TransferFunction function);

signals:
    void functionLoaded(const tavo::TransferFunction& function);

private:
    void askForFile(bool isSaved, const std::function<std::string(const QString& file)>& work);
    void say(const QString& file, const std::string& what);

    TransferFunction m_Function;
    QPushButton* m_Save;
    QPushButton* m_Load;
    QLabel* m_Error;
};

} // namespace tavo
