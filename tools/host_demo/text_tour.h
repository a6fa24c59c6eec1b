// text_tour.h - streams, paths, numbers, text files, log and trace at work on one text file.
#pragma once

/// Prints a few lines a family.
/// @param textFile  read, not changed
/// @param folder    takes the files that the tour makes
/// @return false when something did not come back as it was put in
bool ShowTextFamilies(const char* textFile, const char* folder);
