// registry_test.cpp
