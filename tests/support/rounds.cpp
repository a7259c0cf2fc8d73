#include <support/rounds.h>

#include <QtGlobal>

int testRounds(int usual)
{
    bool isNumber = false;
    const int rounds = qEnvironmentVariableIntValue("ORV_TEST_ROUNDS", &isNumber);
    return isNumber && rounds > 0 ? rounds : usual;
}
