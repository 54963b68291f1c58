// SPDX-License-Identifier: MIT
// Measures the cost of a change of language, from the click on the options page to the painted
// window, against building the pages once.
#include <QLoggingCategory>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QtTest>

#include "base/pages.h"
#include "bench/report.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

/// Usage: bench_language
int main(int argc, char **argv)
{
    constexpr double goal = 1.3;
    const QApplication application(argc, argv);
    QLoggingCategory::setFilterRules("*.debug=false");
    ShopDriver shop({}, {{"LanguageId", 1}});
    bool russian = false;
    const auto build = [&shop] {
        shop.window->buildUserInterface();
        QCoreApplication::processEvents();
    };
    const Bench::Work change{
        [&] {
            shop.pageWidget()->findChild<QPushButton *>("okButton")->click();
            QCoreApplication::processEvents();
        },
        [&] {
            shop.stack = qobject_cast<QStackedWidget *>(shop.window->centralWidget());
            shop.press("optionsButton");
            russian = !russian;
            shop.find<QRadioButton>(russian ? "russianRadio" : "englishRadio")->setChecked(true);
        }};
    Bench::compare("a change of the language", shop.stack->count(), change, {build}, goal, 9);
    return 0;
}
