#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QMovie;
class QProgressBar;

namespace nv {

// Frm_Copy: stands on the screen while a backup copies. It offers the user nothing to do: no
// button, no close box, and a close from outside is refused until the run unloads it.
class FrmCopy : public QWidget {
    Q_OBJECT
public:
    explicit FrmCopy(QWidget* parent = nullptr);

    // Opens the clip beside the program and plays it. Throws FileFailure kFailCopyClip when the
    // clip is missing or cannot be read.
    void Form_Load();
    // Stops the clip and closes the window.
    void Unload();

    QMovie* clip() const { return clip_; }

    QLabel* Animation1;
    QProgressBar* Pbr;
    QLineEdit* Text1;
    QLabel* Label1;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QMovie* clip_ = nullptr;
    bool unloading_ = false;
};

} // namespace nv
