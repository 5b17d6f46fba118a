#pragma once

#include "custommainwindow.h"

#include <QStringList>

class QLabel;
class CustomFolderSelectWidget;

// Collects the crash dumps of this program, of the maker's sibling tools and
// the system crash dump into "<folder>/<appName>Dumps/" of a folder the user
// picks, then tells what was copied and where (or that none was found) and
// closes.
//
// Construct it (parent optional) and exec() it; nothing to do afterwards.
// The folder shown is kept process-wide for the next opening. Throws
// std::bad_alloc when the dialog cannot be built.
class VxGrabDumpTool : public CustomMainWindow
{
    Q_OBJECT
public:
    explicit VxGrabDumpTool(QWidget *pParent = nullptr);
    ~VxGrabDumpTool() override;

    CustomFolderSelectWidget *folderField() const { return pFolder; }

    // What one grab did.
    struct CGrabResult
    {
        QString strTarget;        // the folder copied into
        QStringList listCopied;   // file names copied now
        QStringList listExisting; // found, but already in the target (left as they were)
        QStringList listFailed;   // found, but the copy failed
    };
    // Collects and copies into strFolder's dump folder (no message).
    static CGrabResult grabInto(const QString &strFolder);
    // The message shown after a grab.
    static QString resultText(const CGrabResult &result);
    static QString resultDetails(const CGrabResult &result);

protected:
    void cOnOKClicked() override;
    void changeEvent(QEvent *pEvent) override;
    void hideEvent(QHideEvent *pEvent) override;

private:
    bool init();
    void retranslateTexts();

    QLabel *pPathLabel = nullptr;
    QLabel *pExplain = nullptr;
    CustomFolderSelectWidget *pFolder = nullptr;
};
