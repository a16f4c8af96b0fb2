#pragma once

class Pictures;

/// Plays the twelve faults to a window on a clock of its own and saves what its trace says of each.
/// @return how many were said something else of than the tests expect, or could not be saved
int takeFaults(Pictures& pictures);
