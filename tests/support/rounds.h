#pragma once

/**
 * How often a randomised comparison runs: ORV_TEST_ROUNDS when the environment sets it, else @p
 * usual. The texts are the same in every run.
 */
int testRounds(int usual);
