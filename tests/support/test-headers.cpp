// Nothing: carries the precompiled headers that the test programs use again.
int main() {
    return 0;
}
