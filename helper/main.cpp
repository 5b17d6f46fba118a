#include "helperverbs.h"

#include <QCoreApplication>
#include <QStringList>

// vetrix-helper: the privileged half of Vetrix Tool's repairs, started with
// pkexec (see org.orvex.vetrixtool.policy). It accepts only the verbs listed
// in helperverbs.h and checks every argument itself.
int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    return HelperVerbs::run(app.arguments().mid(1));
}
