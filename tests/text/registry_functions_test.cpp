// registry_functions_test.cpp
