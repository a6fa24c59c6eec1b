// registry_malformed_test.cpp
